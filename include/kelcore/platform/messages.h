#pragma once

/// @file
/// Messages: texts of error codes, the language of numbered inserts, and the memory that their results come in.
///
/// In the text of a message,
/// - `%1` to `%99` are inserts: arguments by number, narrow text unless a printf conversion in exclamation marks stands
///   behind (`%1!5d!`). Conversions are those of stdio.h for integers, pointers, characters and texts, `%s` and `%c`
///   being narrow here and `%S`, `%ls`, `%ws` and `%C` wide. An insert n with asterisks takes them from arguments n
///   and, if there are two, n + 1, and its value from the next one.
/// - `%n` is a line break, `%r` a carriage return, `%t` a tab, `%b` a space, `%0` the end of the text; `%` before any
///   other character gives that character (`%%`, `%.`, `%!`).
/// - A line break, however it is written, becomes "\r\n" or what the line width asks for. What inserts bring is put out
///   as it is.
///
/// A bad insert fails the call: no closing exclamation mark, anything but one conversion between the marks, a
/// conversion of doubles, an insert without arguments. So does a `%` at the end of the text.

#include <kelcore/platform/base.h>

#include <cstdarg>

#define FORMAT_MESSAGE_MAX_WIDTH_MASK 0x000000FF
#define FORMAT_MESSAGE_ALLOCATE_BUFFER 0x00000100
#define FORMAT_MESSAGE_IGNORE_INSERTS 0x00000200
#define FORMAT_MESSAGE_FROM_STRING 0x00000400
#define FORMAT_MESSAGE_FROM_HMODULE 0x00000800
#define FORMAT_MESSAGE_FROM_SYSTEM 0x00001000
#define FORMAT_MESSAGE_ARGUMENT_ARRAY 0x00002000

#define LMEM_FIXED 0x0000
#define LMEM_ZEROINIT 0x0040
#define LPTR (LMEM_FIXED | LMEM_ZEROINIT)

extern "C" {

/// Puts a message together.
///
/// The text is @p source with FORMAT_MESSAGE_FROM_STRING, otherwise, with FORMAT_MESSAGE_FROM_SYSTEM, that of the error
/// code @p id: in English, without inserts, ending in a line break; a COM result 0x8007xxxx has the text of its low
/// word. FORMAT_MESSAGE_FROM_HMODULE finds nothing, as modules have no message tables.
///
/// FORMAT_MESSAGE_IGNORE_INSERTS leaves inserts and escapes as they are written, but for `%n`, `%r`, `%t` and `%0`.
///
/// The low byte of the flags is the line width. With 0, line breaks of the text stay; otherwise they become spaces.
/// With 1 to 254, lines are broken at spaces so that they have at most so many characters; a longer word is cut, an
/// insert never. `%n` breaks the line in every case.
///
/// @param flags FORMAT_MESSAGE_ values and the line width.
/// @param language of a system text: 0, 0x0400, 0x0800 (neutral) or any English.
/// @param buffer receives the text with a terminator. With FORMAT_MESSAGE_ALLOCATE_BUFFER it receives a pointer to the
///        text, which the caller frees with LocalFree; null on failure.
/// @param size bytes of the buffer, or the least size of an allocated one.
/// @param arguments the caller's va_list object, or with FORMAT_MESSAGE_ARGUMENT_ARRAY an array of pointer-sized
/// values;
///        either way argument n is the n-th of such values, and integers and pointers take one each. The list is not
///        moved on. Null if there are no inserts.
/// @return the bytes of the text without its terminator, or 0 with one of
///         - ERROR_INVALID_PARAMETER: no source, no buffer, unknown flags, a bad insert;
///         - ERROR_MR_MID_NOT_FOUND, ERROR_RESOURCE_LANG_NOT_FOUND: no system text for the code, or in the language;
///         - ERROR_RESOURCE_DATA_NOT_FOUND: FORMAT_MESSAGE_FROM_HMODULE alone;
///         - ERROR_NO_WORK_DONE: the text is empty;
///         - ERROR_INSUFFICIENT_BUFFER: the buffer, which is untouched, is too small, or the text has more than 65,535
///           bytes;
///         - ERROR_NOT_ENOUGH_MEMORY.
KELPLATFORM_API DWORD WINAPI FormatMessageA(DWORD flags, LPCVOID source, DWORD id, DWORD language, LPSTR buffer,
                                            DWORD size, va_list* arguments);

/// Allocates fixed memory, which LocalFree frees. @param flags LMEM_FIXED or LPTR (cleared); others are refused.
/// @return the memory, or null with ERROR_INVALID_PARAMETER or ERROR_NOT_ENOUGH_MEMORY.
KELPLATFORM_API HLOCAL WINAPI LocalAlloc(UINT flags, SIZE_T bytes);

/// Frees memory of LocalAlloc or FormatMessageA; null is left alone. @return null.
KELPLATFORM_API HLOCAL WINAPI LocalFree(HLOCAL memory);

} // extern "C"
