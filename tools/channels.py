# SPDX-License-Identifier: GPL-3.0-or-later
"""The channels of the live site, and the faults that they can be given."""

from __future__ import annotations

from dataclasses import dataclass, field


@dataclass
class Channel:
    """One channel of the site. `colour` is the background of its video (an ffmpeg colour).

    `faults` maps a resource ("page", "watch", "master", "list", "segment") to the status it is answered
    with instead, to "hang" for no answer, to "loop" for a redirect to itself, or to "empty" for a page without
    a stream. `fault_count` limits how many requests get a fault. `ends` closes the live list; `frozen_at` stops it from advancing.
    """

    handle: str
    video_id: str
    colour: str
    faults: dict[str, int | str] = field(default_factory=dict)
    fault_count: dict[str, int] = field(default_factory=dict)
    ends: bool = False
    frozen_at: float | None = None


# The built-in channels that the site knows, each with a colour of its own.
STANDARD_CHANNELS = (
    ("AlArabiya", "n7eQejkXbnM", "0x1040a0"),
    ("AlHadath", "0STUpSryLWY", "0xa02020"),
    ("aljazeera", "bNyUyrR0PHo", "0xa07010"),
    ("AljazeeraMubasher", "rvJOGTSQNj8", "0x108040"),
)
