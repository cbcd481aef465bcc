# SPDX-License-Identifier: GPL-3.0-or-later
"""What a row of the table of faults is."""

from collections.abc import Callable
from dataclasses import dataclass, field


@dataclass(frozen=True)
class Row:
    """`check` does it, gives what a person saw, and raises where that is not what it should be."""

    name: str
    done: str
    check: Callable[..., str]
    ground: dict = field(default_factory=dict)
    # Whether the program still runs at the end, and must then quit as if nothing had been...
    quits: bool = True
    # ...with its settings whole in their file.
    keeps_settings: bool = True
    needs_no_ground: bool = False

    @property
    def group(self) -> str:
        return self.name.partition(".")[0]
