# SPDX-License-Identifier: GPL-3.0-or-later
"""The desktops of docs/desktops.md and what is checked on each. Run it with scripts/desktops."""
