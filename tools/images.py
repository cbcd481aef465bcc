# SPDX-License-Identifier: GPL-3.0-or-later
"""What a screenshot shows."""

from PIL import Image, ImageChops, ImageStat

from tools.channels import Channel


def is_near(first, second, tolerance: int) -> bool:
    """Whether two colours are alike."""
    return all(abs(a - b) < tolerance for a, b in zip(first, second))


def moves(first: Image.Image, second: Image.Image) -> bool:
    """Whether two pictures differ by more than noise."""
    difference = ImageStat.Stat(ImageChops.difference(first, second))
    return max(difference.mean) > 0.5


def background(picture: Image.Image) -> tuple[int, int, int]:
    """Returns the colour of the player window beside the site's texts and its moving bar."""
    return picture.getpixel((picture.width - 30, picture.height * 2 // 3))


def shows(picture: Image.Image, channel: Channel) -> bool:
    """Whether it is this channel's picture, with nothing drawn over it."""
    return is_near(background(picture), bytes.fromhex(channel.colour.removeprefix("0x")), 25)
