# SPDX-License-Identifier: GPL-3.0-or-later
"""The updater's window on a desktop, operated by mouse and keyboard, with a feed over https."""

import base64
import pathlib
import subprocess
import tempfile
import threading

from case import DesktopCase
from tools.certificates import certificate
from tools.desktop import Desktop
from tools.loopback import LoopbackServer
from tools.waiting import wait_until

NAME = "orvane-2.3.0.tar.gz"
NOTES = """<h2>What is new</h2>
<ul><li>The window comes back faster after the pointer has left.</li>
<li>Channels with &lt;strange&gt; names keep them &amp; their places.</li>
<li>A stream that was refused is opened again without a click, however long it takes until the server
has made up its mind.</li></ul>
<p>Thanks to all who have told us what went wrong, and when.</p>"""


def openssl(folder: pathlib.Path, command: str) -> None:
    subprocess.run(["openssl", *command.split()], cwd=folder, check=True, capture_output=True)


class UpdateServer(LoopbackServer):
    """Announces version 2.3 over https on loopback, with a certificate and a signature of its own.
    The second half of the archive is sent only after `allowed` is set, that of the feed after `feed_allowed`."""

    def __init__(self, folder: pathlib.Path):
        self.archive = b"a new version\n" * 200_000
        (folder / NAME).write_bytes(self.archive)
        openssl(folder, "genpkey -algorithm ed25519 -out sign.key")
        openssl(folder, "pkey -in sign.key -pubout -outform DER -out sign.pub")
        openssl(folder, f"pkeyutl -sign -inkey sign.key -rawin -in {NAME} -out sig")
        self.key = base64.b64encode((folder / "sign.pub").read_bytes()[-32:]).decode()
        self.feed_allowed = threading.Event()
        tls = certificate(folder)
        self.certificate = str(folder / "certificate.pem")
        self._signature = base64.b64encode((folder / "sig").read_bytes()).decode()
        super().__init__(tls)

    def answer(self, request):
        is_archive = request.path.endswith(NAME)
        body = self.archive if is_archive else self.feed()
        half = len(body) // 2
        self.begin(request, 200, len(body))
        request.wfile.write(body[:half])
        (self.allowed if is_archive else self.feed_allowed).wait()
        request.wfile.write(body[half:])

    def feed(self) -> bytes:
        return f"""<rss xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle"><channel>
            <item><sparkle:version>2.3.0</sparkle:version>
            <sparkle:shortVersionString>2.3</sparkle:shortVersionString>
            <description><![CDATA[{NOTES}]]></description>
            <enclosure url="{self.origin}/{NAME}" length="{len(self.archive)}" sparkle:os="linux"
            sparkle:edSignature="{self._signature}"/></item></channel></rss>""".encode()


class UpdaterCase(DesktopCase):
    def open(self, feed_is_held: bool = False):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.server = self.enterContext(UpdateServer(self.folder))
        if not feed_is_held:
            self.server.feed_allowed.set()
        self.desktop = self.enterContext(Desktop())
        # For folders, where no file manager is on the session bus.
        self.opened, path = self.catch_opened()
        self.bus = self.folder / "bus"
        with open(self.bus, "w", encoding="utf-8") as log:
            self.desktop.background(["dbus-monitor", "interface=org.freedesktop.FileManager1"], stdout=log)
        wait_until(lambda: "NameAcquired" in self.bus.read_text(encoding="utf-8"), "the bus monitor")
        self.downloads = pathlib.Path(self.desktop.environment["HOME"]) / "Downloads"
        arguments = [f"{self.server.origin}/appcast.xml", self.server.key, self.server.certificate]
        return self.start("updater_probe", arguments=arguments, PATH=path)

    def shown(self) -> list[str]:
        """Returns the headlines that the window has shown."""
        lines = self.program.log().splitlines()
        return [line.removeprefix("shown ") for line in lines if line.startswith("shown ")]

    def wait_for(self, headline: str) -> str:
        """Waits until the window shows the headline and has the focus; returns the window."""

        def has_focus():
            windows = self.windows()
            focused = self.desktop.run("xdotool", "getwindowfocus").split()
            return windows[0] if windows == focused and self.shown()[-1:] == [headline] else None

        return wait_until(has_focus, f"{headline}; so far: {self.shown()}")

    def windows(self) -> list[str]:
        return self.desktop.windows("Orvane Update")

    def wait_for_offer(self) -> tuple[int, int]:
        """Waits for the offer with its notes; returns the position of its Download button."""
        window = self.wait_for("Orvane 2.3 is available")

        def place():
            x, y, width, height = self.desktop.frame(window)
            return (x + width - 150, y + height - 32) if height > 250 else None

        return wait_until(place, "the notes")

    def files(self) -> dict[str, int]:
        return {file.name: file.stat().st_size for file in self.downloads.glob("*")}

    def wait_for_half(self):
        """Waits until most of the first half is on the disk; the server holds back the rest."""
        enough = len(self.server.archive) // 3
        wait_until(lambda: self.files().get(f"{NAME}.part", 0) > enough, "half of the file")

    def ask_again(self):
        self.program.process.stdin.write("check\n")
        self.program.process.stdin.flush()


class Updates(UpdaterCase):
    def test_download(self):
        self.open()
        x, y = self.wait_for_offer()
        self.ask_again()
        wait_until(lambda: "asked" in self.program.log(), "the second request")
        self.assertEqual(len(self.windows()), 1)
        self.desktop.click(x, y)
        self.wait_for_half()
        self.assertEqual(list(self.files()), [f"{NAME}.part"])
        self.server.allowed.set()
        self.wait_for("Orvane 2.3 has been downloaded")
        self.assertEqual((self.downloads / NAME).read_bytes(), self.server.archive)
        self.assertEqual(list(self.files()), [NAME])
        uri = (self.downloads / NAME).as_uri()
        wait_until(lambda: f'string "{uri}"' in self.bus.read_text(encoding="utf-8"), "the call on the bus")
        wait_until(self.opened.exists, "the folder")
        wait_until(self.opened.read_text, "what was opened")
        self.assertEqual(self.opened.read_text(encoding="utf-8"), f"{self.downloads.as_uri()}\n")
        self.desktop.run("xdotool", "key", "Escape")
        wait_until(lambda: not self.windows(), "the window to close")
        self.assertEqual(self.shown(), ["Checking for updates…", "Orvane 2.3 is available",
                                        "Downloading Orvane 2.3", "Orvane 2.3 has been downloaded"])
        self.quit_cleanly()

    def test_leave_in_the_middle(self):
        self.open()
        self.wait_for_offer()
        self.desktop.run("xdotool", "key", "Return")
        self.wait_for_half()
        self.desktop.run("xdotool", "key", "Escape")
        wait_until(lambda: not self.windows(), "the window to close")
        self.assertEqual(self.files(), {})
        self.ask_again()
        self.wait_for_offer()
        self.desktop.run("xdotool", "key", "Return")
        self.wait_for_half()
        self.quit_cleanly()
        self.assertEqual(self.files(), {})
        self.assertFalse(self.opened.exists())
