# SPDX-License-Identifier: GPL-3.0-or-later
"""Certificates for servers on loopback."""

import pathlib
import subprocess


def certificate(folder: pathlib.Path) -> pathlib.Path:
    """Makes a self-signed certificate for loopback; returns the file with it and its key."""
    path = folder / "site.pem"
    subprocess.run(
        ["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1"]
        + ["-nodes", "-days", "2", "-subj", "/CN=localhost"]
        + ["-addext", "subjectAltName=DNS:localhost,IP:127.0.0.1"]
        + ["-keyout", str(path), "-out", str(folder / "certificate.pem")],
        check=True,
        stderr=subprocess.DEVNULL,
    )
    with open(path, "a", encoding="ascii") as out:
        out.write((folder / "certificate.pem").read_text(encoding="ascii"))
    return path
