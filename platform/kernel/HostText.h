#pragma once

#include <kelcore/platform/base.h>

#include <string>
#include <string_view>

namespace kel::platform {

/// Converts a narrow path from the ANSI code page to UTF-8, the encoding of the layer's own path work and of the host.
/// Under UTF-8 the bytes pass as they are, well-formed or not.
std::string Utf8FromAnsi(std::string_view text);

/// The inverse of Utf8FromAnsi. Characters that the code page lacks become its default character.
std::string AnsiFromUtf8(std::string_view text);

/// As AnsiFromUtf8, without a copy where the text stays as it is. @p room holds the result where it does not.
std::string_view AnsiFromUtf8(std::string_view text, std::string& room);

/// The bytes that the character at the front of @p ansi takes, in the ANSI code page; at least 1. @p ansi is not empty.
std::size_t CharacterLength(std::string_view ansi);

/// As much of the beginning of @p ansi as fits into @p size bytes without cutting a character.
std::string_view CutAtCharacter(std::string_view ansi, std::size_t size);

/// Gives a text out the way path functions do: copies @p ansi with a terminator if @p buffer is large enough.
/// @return the length without the terminator, or the size needed with it if the buffer is too small.
DWORD GiveText(std::string_view ansi, LPSTR buffer, DWORD size);

/// A name in the form in which names are compared without regard to case: UTF-16, each unit in upper case by Unicode's
/// simple mapping, whatever the process's locale is.
std::u16string FoldName(std::string_view utf8);

/// Whether all of @p text is ASCII.
bool IsAscii(std::string_view text);

/// Whether case can make a difference to @p utf8.
bool HasLetters(std::string_view utf8);

} // namespace kel::platform
