# SPDX-License-Identifier: GPL-3.0-or-later
"""The telemetry signals that reach the server."""

import json

from case import MenuCase
from tools.loopback import LoopbackServer
from tools.waiting import wait_until


class SignalServer(LoopbackServer):
    """Records the body of each posted signal. Answers only after `allowed` is set."""

    def __init__(self):
        super().__init__()
        self.signals: list[tuple[str, str, list]] = []

    def answer(self, request):
        body = request.rfile.read(int(request.headers["Content-Length"]))
        self.signals.append((request.path, request.headers["Content-Type"], json.loads(body)))
        self.allowed.wait()
        self.begin(request, 200, 0)

    def wait_for(self, count: int) -> list[dict]:
        """Waits for `count` signals; returns the objects received so far."""
        wait_until(lambda: len(self.signals) >= count, f"{count} signals; so far: {self.signals}")
        for path, kind, body in self.signals:
            assert (path, kind, len(body)) == ("/v2/", "application/json", 1), (path, kind, body)
        return [body[0] for _, _, body in self.signals]


class Telemetry(MenuCase):
    def setUp(self):
        super().setUp()
        self.server = self.enterContext(SignalServer())

    def test_two_runs(self):
        self.server.allowed.set()
        for run in (1, 2):
            program = self.start(ORVANE_TELEMETRY=self.server.origin)
            program.wait_for("playing")
            self.server.wait_for(2 * run - 1)
            self.open_context_menu()
            self.desktop.key("Down", "Down", "Return")
            self.server.wait_for(2 * run)
            self.wait_for_channel("AlHadath", "alhadath")
            self.quit_cleanly()
        signals = self.server.wait_for(4)
        users = {signal.pop("clientUser") for signal in signals}
        sessions = [signal.pop("sessionID") for signal in signals]
        self.assertEqual(len(users), 1)
        self.assertRegex(users.pop(), "^[0-9a-f]{64}$")
        self.assertTrue(sessions[0] == sessions[1] != sessions[2] == sessions[3], sessions)
        app = "5D2C8E41-7A93-4B6F-9E20-3C1A8F64B7D5"
        launch = {"appID": app, "type": "appLaunched", "payload": {}}
        played = {"appID": app, "type": "channelPlayed",
                  "payload": {"channelID": "alhadath", "channelName": "Al Hadath"}}
        self.assertEqual(signals, [launch, played] * 2)

    def test_quit_while_sending(self):
        """A server that never answers neither delays the end nor causes output."""
        logs = []
        for origin in ("", self.server.origin):
            # Nothing plays on this site: playing would make other libraries log.
            program = self.start(site="http://127.0.0.1:1", ORVANE_TELEMETRY=origin)
            program.wait_for("window-shown")
            self.server.wait_for(1 if origin else 0)
            self.quit_cleanly()
            logs.append(program.log())
        self.assertEqual(logs[0], logs[1])
        self.assertIn("lumenfold.orvane.telemetryUserID", program.preferences())
