# SPDX-License-Identifier: GPL-3.0-or-later
"""A web server on loopback with answers given by a test."""

import contextlib
import http.server
import pathlib
import ssl
import threading


class LoopbackServer:
    """Use as a context manager. Subclasses implement `answer`, which is called on a thread for each request; one
    that waits for `allowed` is released when the server ends, at the latest. With a `certificate` it serves https."""

    def __init__(self, certificate: pathlib.Path | None = None):
        self.allowed = threading.Event()
        server = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                with contextlib.suppress(OSError):  # The client may have disconnected.
                    server.answer(self)

            do_POST = do_GET

            def log_message(self, *_):
                pass

        self._server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        if certificate:
            context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
            context.load_cert_chain(certificate)
            self._server.socket = context.wrap_socket(self._server.socket, server_side=True)
        scheme = "https" if certificate else "http"
        self.origin = f"{scheme}://127.0.0.1:{self._server.server_address[1]}"

    def answer(self, request: http.server.BaseHTTPRequestHandler) -> None:
        raise NotImplementedError

    @staticmethod
    def begin(request: http.server.BaseHTTPRequestHandler, status: int, length: int) -> None:
        request.send_response(status)
        request.send_header("Content-Length", str(length))
        request.end_headers()

    def __enter__(self):
        threading.Thread(target=self._server.serve_forever, daemon=True).start()
        return self

    def __exit__(self, *_):
        self.allowed.set()
        self._server.shutdown()
        self._server.server_close()
