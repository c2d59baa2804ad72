#pragma once

#include <kelcore/platform/base.h>

#include <string>

/// Texts as arguments of a format: how long they are, and what they are in the other width.
namespace kel::platform {

/// The length of @p text up to its NUL, or @p most when there is none among the first @p most; nothing past those is
/// read.
template <class Unit>
std::size_t BoundedLength(const Unit* text, std::size_t most) {
    std::size_t length = 0;
    while (length < most && text[length] != 0)
        ++length;
    return length;
}

/// The bytes of the character of the ANSI code page that begins at @p text, of which @p length bytes are there; a
/// damaged UTF-8 character ends where its damage begins. A character cut off at the end answers more than @p length.
std::size_t CharacterLength(const char* text, std::size_t length);

/// How much of @p text is left when a character cut off at its end is left out.
std::size_t WholeCharacters(const char* text, std::size_t length);

/// Narrow text of the ANSI code page as units; malformed bytes become the page's default unit.
std::basic_string<WCHAR> Widened(const char* text, std::size_t length);

/// Units as narrow text of the ANSI code page; units without a counterpart become the page's default character.
std::string Narrowed(const WCHAR* text, std::size_t length);

} // namespace kel::platform
