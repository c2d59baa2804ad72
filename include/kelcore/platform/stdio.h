#pragma once

/// @file
/// The printf family of the Microsoft C library over 16-bit text.
///
/// A conversion is `%[flags][width][.precision][size]type`. There are no positional arguments.
/// - Flags: `-` left-aligned, `+` and space for signed numbers, `0` zeros instead of leading spaces (texts too; ignored
///   for integers with a precision), `#` the other form.
/// - Width and precision: a number, or `*` to take an int. A negative width means left-aligned, a negative precision
///   none. A number past INT_MAX counts as INT_MAX.
/// - Types: `d i u o x X` integers; `e E f F g G a A` doubles; `p` a pointer, all its digits, upper case; `c` a 16-bit
///   unit, `C` a narrow character; `s` wide text, `S` narrow text; `%` itself. A null text prints as "(null)". `n`
///   takes its pointer, writes nothing through it and prints nothing.
/// - Sizes: `h` and `hh` short; `l` and `w` long, which has 32 bits as on Windows; `ll`, `I64` and `j` 64 bits; `I32`
///   32 bits; `I`, `z` and `t` the width of a pointer; `L` nothing. With `c C s S`, `h` means narrow, `l` or `w` wide.
/// - What is no conversion is left out up to the unit that cannot belong to one, which is printed as plain text.
///
/// Narrow text is in the ANSI code page. A precision counts its bytes, and a character that it cuts in two is left out.
///
/// Doubles print as the C library that Windows programs share does it: exactly, to any precision; a tie is rounded away
/// from zero; exponents have at least three digits (1.000000e+000), except those of `a`, which prints 13 digits unless
/// told otherwise; infinities and NaN take the place of the digits, cut and rounded like them: 1.#INF00, -1.#IND00 (the
/// NaN that invalid operations give), 1.#QNAN0. `F` prints like `f`, which that library does not know.

#include <kelcore/platform/base.h>

#include <cstdarg>

extern "C" {

/// Formats @p arguments into @p text, a buffer of @p count units.
/// @return the units of the result, without the terminator. A result of exactly @p count units fits and has no
///         terminator. If the result does not fit, or is longer than INT_MAX: -1, and the buffer holds its first
///         @p count units. With no @p text and a @p count of 0: the units that the result has.
/// @throws std::bad_alloc when a long text that is not ASCII has to be converted.
KELPLATFORM_API int _vsnwprintf(WCHAR* text, size_t count, const WCHAR* format, va_list arguments);

/// As _vsnwprintf, over the arguments that follow.
KELPLATFORM_API int _snwprintf(WCHAR* text, size_t count, const WCHAR* format, ...);

/// @return the units that the result has, without the terminator; -1 if there are more than INT_MAX.
KELPLATFORM_API int _vscwprintf(const WCHAR* format, va_list arguments);

/// As _vscwprintf, over the arguments that follow.
KELPLATFORM_API int _scwprintf(const WCHAR* format, ...);

} // extern "C"
