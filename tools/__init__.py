# SPDX-License-Identifier: GPL-3.0-or-later
"""What the tests, the demonstration and the benchmark share: live sites, desktops and processes."""
