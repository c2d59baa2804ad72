#pragma once

/// @file
/// Text: the code-page converters and the wide string class.

#include <kelcore/export.h>
#include <kelcore/widestring.h>

/// Converts wide text to the process's ANSI code page, up to its first NUL unit (`WideCharToMultiByte`, code page 0).
/// Units without a counterpart become the page's default character.
/// @return the bytes; empty when the source is empty or the platform refuses the conversion.
KELCORE_API NarrowString StdW2A(const WideString& text);

/// Converts narrow text of the process's ANSI code page to wide text, up to its first NUL byte
/// (`MultiByteToWideChar`, code page 0). A double-byte character becomes one unit.
/// @return the units; empty when the source is empty or the platform refuses the conversion.
KELCORE_API WideString StdA2W(const NarrowString& text);
