// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The C header of the X server's keyboard extension, one of whose members has the name of a keyword
// of C++. Compilers warn of hiding a keyword, except in what they take for a system's header.
#pragma GCC system_header

#define explicit explicitMember
#include <xcb/xkb.h>
#undef explicit
