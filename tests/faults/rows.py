# SPDX-License-Identifier: GPL-3.0-or-later
"""One row of the table of faults."""

from collections.abc import Callable
from dataclasses import dataclass, field


@dataclass(frozen=True)
class Row:
    """`check` causes the fault; returns what the user saw, or raises if that is wrong."""

    name: str
    fault: str
    check: Callable[..., str]
    fixture: dict = field(default_factory=dict)
    # Whether the program still runs at the end and must then quit cleanly.
    quits: bool = True
    # Whether the preferences file must be intact at the end.
    keeps_settings: bool = True
    needs_no_fixture: bool = False

    @property
    def group(self) -> str:
        return self.name.partition(".")[0]
