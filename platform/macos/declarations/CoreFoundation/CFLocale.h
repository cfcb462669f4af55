// Locales, as far as the user's languages go.
#pragma once

#include <CoreFoundation/CFArray.h>

extern "C" {

/// Identifiers such as "ko-KR", the most wanted first.
CFArrayRef CFLocaleCopyPreferredLanguages();
}
