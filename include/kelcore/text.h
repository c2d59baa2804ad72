#pragma once

/// @file
/// Text: the code-page converters, the wide string class and its literal.

#include <kelcore/export.h>
#include <kelcore/widestring.h>

#include <cstddef>
#include <functional>
#include <string_view>
#include <type_traits>

class ModuleBase;

/// Converts wide text to the process's ANSI code page, up to its first NUL unit (`WideCharToMultiByte`, code page 0).
/// Units without a counterpart become the page's default character.
/// @return the bytes; empty when the source is empty or the platform refuses the conversion.
KELCORE_API NarrowString StdW2A(const WideString& text);

/// Converts narrow text of the process's ANSI code page to wide text, up to its first NUL byte
/// (`MultiByteToWideChar`, code page 0). A double-byte character becomes one unit.
/// @return the units; empty when the source is empty or the platform refuses the conversion.
KELCORE_API WideString StdA2W(const NarrowString& text);

/// The library's text value: a WideString with constructors from every common source, cutting, case mapping, lines and
/// formatting.
///
/// It adds no data and no virtual operation, so a String passes wherever a WideString is expected and every operation
/// of WideString is there. A text may hold NUL units; a member that takes a text only up to its first NUL says so.
/// Pointers to text are never null. Like a standard string, one object belongs to one thread at a time.
///
/// Only allocation failures and the exceptions of the standard string leave this class: std::length_error for a text
/// that would grow beyond its largest size, std::out_of_range where stated.
/// @code
/// String line;
/// line.Format(u"%s: %i files"_w, name.c_str(), count);
/// line << 7;
/// @endcode
class KELCORE_API String : public WideString {
public:
    /// The empty text.
    String();
    String(const String& other);
    String(String&& other) noexcept = default;
    /// The units of @p text up to its first NUL.
    String(const unsigned short* text);
    /// Exactly @p count units from @p text, NUL units included.
    String(const unsigned short* text, unsigned int count);
    /// A text of one unit.
    String(unsigned short unit);
    String(const WideString& text);
    /// The narrow text as StdA2W converts it.
    String(const NarrowString& text);
    /// @p value in decimal: a minus sign for negative values, then the digits.
    String(int value);
    /// @p value in fixed notation with six decimals (format "%lf"): 2.5 gives "2.500000".
    String(double value);

    String& operator=(const String& other);
    String& operator=(String&& other) noexcept = default;
    /// Replaces the text with @p text up to its first NUL; @p text may point into this String.
    const String& operator=(const unsigned short* text);
    /// Replaces the text with one unit.
    const String& operator=(unsigned short unit);
    /// Replaces the text with the narrow text as StdA2W converts it.
    const String& operator=(const NarrowString& text);

    /// The units with a terminating NUL; never null, valid until this String is changed or destroyed.
    operator const unsigned short*() const;
    /// The text as StdW2A converts it, up to its first NUL.
    operator NarrowString() const;

    using WideString::operator[];
    /// The unit at @p index, as WideString gives it. Exact for every integer type: where size_t is no wider than int,
    /// the conversion to a pointer would otherwise offer a second, equally good subscript.
    template <class Index, std::enable_if_t<std::is_integral_v<Index>, int> = 0>
    unsigned short& operator[](Index index) {
        return WideString::operator[](static_cast<size_type>(index));
    }
    /// The unit at @p index of a constant text.
    template <class Index, std::enable_if_t<std::is_integral_v<Index>, int> = 0>
    const unsigned short& operator[](Index index) const {
        return WideString::operator[](static_cast<size_type>(index));
    }

    /// The first @p count units, NUL units included. A negative count gives the empty text, one at or above the length
    /// the whole text.
    String Left(int count) const;
    /// The last @p count units, up to the first NUL among them. A negative count gives the empty text, one at or above
    /// the length the whole text with its NUL units.
    String Right(int count) const;

    /// Compares this text, up to its first NUL, with @p other without regard to case (`_wcsicmp`; `_wcsnicmp` over at
    /// most @p count units when @p count is not negative).
    /// @return negative, 0 or positive as this text sorts before, equal to or after @p other.
    int CompareNoCase(const unsigned short* other, int count) const;

    /// Cuts the text at its first NUL and maps each unit to lower case under the process's locale (`towlower`).
    void ToLower();
    /// Cuts the text at its first NUL and maps each unit to upper case under the process's locale (`towupper`).
    void ToUpper();

    /// Appends @p value in decimal. @return this String.
    const String& operator<<(int value);
    /// Appends @p value in fixed notation with six decimals (format "%lf"). @return this String.
    const String& operator<<(double value);

    /// Inserts @p count copies of @p unit in front of the unit at @p position; the length as position appends.
    /// @throws std::out_of_range if @p position is beyond the length; the text is unchanged then.
    void Insert(int position, unsigned short unit, int count);

    /// Removes every occurrence of @p unit.
    /// @return the index in the result of the unit that followed the last occurrence (the result's length when none
    ///         did), or -1 when @p unit did not occur.
    int Remove(unsigned short unit);

    /// GetLines over this whole text, NUL units included.
    String GetLines(int first, int last) const;

    /// Takes the lines @p first to @p last, numbered from 0, out of @p length units. A line ends at a line feed; a
    /// carriage return in front of it stays part of the line. The line feed that ends the last line taken is left out.
    /// - @p last negative: up to the end of the text; with @p first at or below 0 that is the whole text.
    /// - @p first negative: the last @p last lines (one when @p last is 0).
    /// - @p first above @p last, or beyond the last line: the empty text.
    ///
    /// Of "a\nbb\nccc": (0, 0) is "a", (1, -1) is "bb\nccc", (-1, 2) is "bb\nccc", (3, 5) is empty. A text that ends
    /// with a line feed has an empty last line.
    static String GetLines(const unsigned short* text, int length, int first, int last);

    /// Replaces the text with @p format in the printf language over 16-bit text (`_vsnwprintf`): "%s" takes a pointer
    /// to wide text, "%S" one to narrow text. No argument may point into this String, whose buffer is resized before
    /// the arguments are read.
    /// @throws std::length_error if the result has more than 2^30 units; the text is empty then.
    void Format(const unsigned short* format, ...);

    /// Replaces the text with the narrow @p format expanded by the system's message formatter (`::FormatMessageA`):
    /// inserts are "%1" to "%99", each a narrow text unless a printf conversion in exclamation marks follows. The text
    /// stays as it was when the formatter yields nothing (a bad insert, an empty format).
    void FormatMessageA(const char* format, ...);

    /// @name Texts from the string resources of a module, which must not be null (ModuleBase::LoadStringA)
    /// @{

    /// Formats like Format; the format is the whole string @p id, empty when the module has none.
    void Format(ModuleBase* module, unsigned int id, ...);
    /// Formats like FormatMessageA; the format is the whole string @p id as StdW2A converts it. The text stays as it
    /// was when the module has none.
    void FormatMessageA(ModuleBase* module, unsigned int id, ...);
    /// Replaces the text with the lines @p first to @p last of string @p id (GetLines; 0 and -1 for all of them).
    /// @return false when the module has no string of that block; the text is empty then.
    bool LoadStringA(unsigned int id, int first, int last, ModuleBase* module);
    /// @}

    /// The system's message for the error @p code, as the system gives it (usually ending in "\r\n"); empty when there
    /// is none.
    static String CreateErrorMessage(unsigned long code);
    /// The system's message for the calling thread's last error (`GetLastError`).
    static String CreateLastErrorMessage();

protected:
    /// The worker of Format. @param arguments points at the caller's va_list.
    void FormatString(const unsigned short* format, char** arguments);
    /// The worker of the variadic FormatMessageA. @param arguments points at the caller's va_list.
    /// @return the count of narrow characters produced, 0 when the formatter failed.
    unsigned int FormatMessageString(const char* format, char** arguments);
    /// Passes its arguments unchanged to the system's `::FormatMessageA`. @return that call's result.
    unsigned long FormatMessageA(unsigned long flags, const void* source, unsigned long messageId,
                                 unsigned long languageId, char* buffer, unsigned long size, char** arguments);
};

/// The text of both operands, the left one first.
KELCORE_API String operator+(const String& left, const String& right);
/// @copydoc operator+(const String&, const String&) The pointer's text counts up to its first NUL.
KELCORE_API String operator+(const String& left, const unsigned short* right);
/// @copydoc operator+(const String&, const unsigned short*)
KELCORE_API String operator+(const unsigned short* left, const String& right);
/// @p left with one unit behind it.
KELCORE_API String operator+(const String& left, unsigned short right);
/// @p right with one unit in front of it.
KELCORE_API String operator+(unsigned short left, const String& right);

/// @p left followed by @p right, where one of the two is a String and the other a plain WideString: settles what would
/// otherwise be a tie between the functions above and those of the standard string.
template <class Wide, class Text,
          std::enable_if_t<
              std::is_same_v<std::decay_t<Wide>, WideString> && std::is_base_of_v<String, std::decay_t<Text>>, int> = 0>
String operator+(Wide&& left, Text&& right) {
    String result;
    result.reserve(left.size() + right.size());
    result.append(left).append(right);
    return result;
}
/// @copydoc operator+(Wide&&, Text&&)
template <
    class Text, class Wide,
    std::enable_if_t<std::is_base_of_v<String, std::decay_t<Text>> && std::is_same_v<std::decay_t<Wide>, WideString>,
                     char> = 0>
String operator+(Text&& left, Wide&& right) {
    String result;
    result.reserve(left.size() + right.size());
    result.append(left).append(right);
    return result;
}

/// A String from a 16-bit literal, NUL units included: `u"text"_w`. Only char16_t literals have this suffix, so a
/// narrow or wide-character literal is refused by the compiler.
inline String operator""_w(const char16_t* text, std::size_t length) {
    String result;
    result.resize(length);
    for (std::size_t i = 0; i != length; ++i)
        result[i] = static_cast<unsigned short>(text[i]);
    return result;
}

/// Hashes all units, NUL units included; equal texts have equal hashes.
template <>
struct std::hash<String> {
    std::size_t operator()(const String& text) const noexcept {
        const auto* bytes = reinterpret_cast<const char*>(text.data());
        return std::hash<std::string_view>()(std::string_view(bytes, text.size() * sizeof(unsigned short)));
    }
};
