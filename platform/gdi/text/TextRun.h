#pragma once

/// @file
/// Texts as sequences of characters, whatever they were stored as.

#include <kelcore/platform/base.h>

#include <cstdint>
#include <vector>

namespace kel::platform {

struct TextCharacter {
    char32_t code;
    std::uint32_t units; ///< bytes, or 16-bit units, that it was stored in
};

using TextRun = std::vector<TextCharacter>;

/// Text in the ANSI code page, by whole characters. @throws std::bad_alloc
TextRun RunOfAnsi(LPCSTR text, std::size_t count);

/// UTF-16; a lone surrogate is a character of its own. @throws std::bad_alloc
TextRun RunOfWide(LPCWSTR text, std::size_t count);

/// The character that a number means to GetCharABCWidthsA: see there.
char32_t CharacterOfAnsiNumber(UINT number);

} // namespace kel::platform
