// <xcb/xkb.h> for C++, in which `explicit` is a keyword and cannot be the name of a member.
#pragma once
#pragma GCC system_header // Clang warns of the keyword in the macro below

#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
