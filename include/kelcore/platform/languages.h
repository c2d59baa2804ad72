#pragma once

/// @file
/// Language identifiers: a primary language in the low 10 bits and a sublanguage in the high 6.

#include <kelcore/platform/base.h>

#define MAKELANGID(primary, sub) (static_cast<WORD>((static_cast<WORD>(sub) << 10) | static_cast<WORD>(primary)))
#define PRIMARYLANGID(language) (static_cast<WORD>(static_cast<WORD>(language) & 0x3FF))
#define SUBLANGID(language) (static_cast<WORD>(static_cast<WORD>(language) >> 10))

/// @name Sublanguages that every language has
/// @{
#define SUBLANG_NEUTRAL 0x00
#define SUBLANG_DEFAULT 0x01
#define SUBLANG_SYS_DEFAULT 0x02
/// @}

/// @name Primary languages
/// @{
#define LANG_NEUTRAL 0x00
#define LANG_CHINESE 0x04
#define LANG_CZECH 0x05
#define LANG_GERMAN 0x07
#define LANG_ENGLISH 0x09
#define LANG_SPANISH 0x0A
#define LANG_FRENCH 0x0C
#define LANG_ITALIAN 0x10
#define LANG_JAPANESE 0x11
#define LANG_KOREAN 0x12
#define LANG_DUTCH 0x13
#define LANG_POLISH 0x15
#define LANG_PORTUGUESE 0x16
#define LANG_RUSSIAN 0x19
#define LANG_SWEDISH 0x1D
/// @}

/// @name Sublanguages of some
/// @{
#define SUBLANG_ENGLISH_US 0x01
#define SUBLANG_ENGLISH_UK 0x02
#define SUBLANG_GERMAN 0x01
#define SUBLANG_GERMAN_SWISS 0x02
#define SUBLANG_GERMAN_AUSTRIAN 0x03
#define SUBLANG_FRENCH 0x01
/// @}

extern "C" {

/// The language of the host's messages: that of the first of LC_ALL, LC_MESSAGES and LANG that is set. English of the
/// United States (0x0409) where it is C, POSIX, unset or unknown; a language without a country, or with an unknown one,
/// is taken with its default sublanguage. The environment is looked at once, at the first call.
KELPLATFORM_API LANGID WINAPI GetSystemDefaultLangID(void);

} // extern "C"
