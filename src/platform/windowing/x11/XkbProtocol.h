// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The C header of XKB, which has a member named like a C++ keyword. Compilers warn about redefining
// a keyword, except in system headers.
#pragma GCC system_header

#define explicit explicitMember
#include <xcb/xkb.h>
#undef explicit
