# SPDX-License-Identifier: GPL-3.0-or-later
"""The program in the field: tries it with several versions of yt-dlp on models of the video site, and prints how
long the picture takes or what is shown instead. Run it with scripts/field."""

from __future__ import annotations

import argparse
import contextlib
import hashlib
import json
import os
import pathlib
import tempfile
import time
import zipapp
from dataclasses import dataclass

from tools.desktop import Desktop
from tools.images import moves, shows
from tools.loopback import LoopbackServer
from tools.modelsite import HOST, MODELS, Model, ModelSite
from tools.program import Program, launcher_with

USUAL_PLACE = "/usr/bin/yt-dlp"
# Neither installs nor upgrades anything here: there is no package index in this network.
INSTALLERS = ("/usr/bin/pip3",)


class ReleaseServer(LoopbackServer):
    """Has the newest yt-dlp as its project's releases have it."""

    def __init__(self, tools: pathlib.Path, newest: str, folder: pathlib.Path):
        super().__init__()
        archive = folder / "yt-dlp"
        zipapp.create_archive(tools / newest / "usr/lib/python3/dist-packages", archive, "/usr/bin/env python3",
                              "yt_dlp:main")
        file = archive.read_bytes()
        base = "/yt-dlp/yt-dlp/releases/latest/download/"
        self._bodies = {
            "/repos/yt-dlp/yt-dlp/releases/latest": json.dumps({"tag_name": newest}).encode(),
            f"{base}yt-dlp": file,
            f"{base}SHA2-256SUMS": f"{hashlib.sha256(file).hexdigest()}  yt-dlp\n".encode(),
        }

    def answer(self, request) -> None:
        body = self._bodies.get(request.path)
        self.begin(request, 200 if body else 404, len(body or b""))
        request.wfile.write(body or b"")


@dataclass
class Result:
    model: str
    tool: str
    seen: str
    runs: int
    requests: int


def install(tool: str, tools: pathlib.Path, folder: pathlib.Path) -> tuple[str, pathlib.Path]:
    """Returns the shell commands that put this version in the usual place, and the file that counts its runs."""
    runs = folder / "runs"
    script = folder / "tool"
    script.write_text(
        f'#!/bin/sh\necho "$*" >> {runs}\n'
        f'PYTHONPATH={tools}/{tool}/usr/lib/python3/dist-packages exec /usr/bin/python3 {tools}/{tool}/usr/bin/yt-dlp "$@"\n',
        encoding="ascii")
    script.chmod(0o755)
    runs.touch()
    hide = "".join(f"[ ! -e {path} ] || mount --bind /dev/null {path}\n" for path in INSTALLERS)
    return f"mount --bind {script} {USUAL_PLACE}\n{hide}", runs


def watch(program: Program, site: ModelSite, seconds: float) -> str:
    """Returns when the picture moved first, or the last error that was shown."""
    channel = site.channels["AlArabiya"]
    first, before = None, None
    while site.age() < seconds:
        program.is_running()
        if program.windows():
            picture = program.video()
            if first is None and before and before.size == picture.size and moves(before, picture) and shows(
                    picture, channel):
                first = site.age()
            before = picture
        time.sleep(0.2)
    if first is not None:
        errors = program.count("error")
        return f"{first:.1f} s" + (f" ({errors} errors)" if errors else "")
    shown = [line.partition("shown: ")[2] for line in program.log().splitlines() if ": shown: " in line]
    return f'"{shown[-1]}"' if shown else "nothing"


def try_cell(model: Model, tool: str, tools: pathlib.Path, seconds: float, screenshot: pathlib.Path | None,
             release: str | None) -> Result:
    with contextlib.ExitStack() as stack:
        folder = pathlib.Path(stack.enter_context(tempfile.TemporaryDirectory()))
        site = stack.enter_context(ModelSite(folder, model))
        desktop = stack.enter_context(Desktop("1280x720"))
        variables = {"ORVANE_VIDEO_SITE": f"https://{HOST}"}
        if release:
            server = stack.enter_context(ReleaseServer(tools, release, folder))
            variables |= {"ORVANE_GITHUB_API": server.origin, "ORVANE_GITHUB": server.origin}
        mounts, runs = install(tool, tools, folder)
        launcher = launcher_with(mounts, f"{os.environ['ORVANE_BUILD']}/orvane", folder / "launcher")
        site.began = time.monotonic()
        program = stack.enter_context(Program(desktop, launcher, "", ["--verbose"], **variables))
        seen = watch(program, site, seconds)
        if screenshot:
            screenshot.mkdir(parents=True, exist_ok=True)
            desktop.screenshot().save(screenshot / f"{model.name}-{tool}.png")
            (screenshot / f"{model.name}-{tool}.log").write_text(program.log(), encoding="utf-8")
        calls = [line for line in runs.read_text(encoding="utf-8").splitlines() if "-g " in line]
        return Result(model.name, tool, seen, len(calls), len(site.log))


def main() -> None:
    parser = argparse.ArgumentParser(prog="scripts/field", description=__doc__.splitlines()[0])
    parser.add_argument("tools", type=pathlib.Path, help=argparse.SUPPRESS)
    names = [model.name for model in MODELS]
    parser.add_argument("--only", nargs="+", metavar="MODEL", choices=names, default=names,
                        help=f"of {', '.join(names)}")
    parser.add_argument("--tool", nargs="+", metavar="VERSION", help="versions of yt-dlp; all without this")
    parser.add_argument("--for", dest="seconds", type=float, default=60, help="seconds per cell (60)")
    parser.add_argument("--keep", type=pathlib.Path, metavar="FOLDER", help="keep a screenshot and the log of each cell")
    parser.add_argument("--no-release", action="store_true", help="without a server that has the newest yt-dlp")
    options = parser.parse_args()
    versions = sorted(path.name for path in options.tools.iterdir())
    print(f"{'model':22} {'yt-dlp':12} {'calls':>5} {'requests':>8}  picture after, or what is shown", flush=True)
    for model in (m for m in MODELS if m.name in options.only):
        for tool in options.tool or versions:
            result = try_cell(model, tool, options.tools, options.seconds, options.keep,
                              None if options.no_release else versions[-1])
            print(f"{result.model:22} {result.tool:12} {result.runs:5} {result.requests:8}  {result.seen}", flush=True)


if __name__ == "__main__":
    main()
