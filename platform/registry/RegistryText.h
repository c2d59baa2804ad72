#pragma once

/// @file
/// Texts of the registry. The hive holds well-formed UTF-8, whatever the process's code page is.

#include <kelcore/platform/base.h>

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace kel::platform {

/// Converts narrow text, NUL bytes included, to the form that the hive holds. Bytes that mean nothing in the code page
/// become what MultiByteToWideChar makes of them.
std::string HiveText(std::string_view ansi);

/// The length of a hive text in 16-bit units.
std::size_t CountUnits(std::string_view text);

/// Whether data of @p type is text that the narrow calls convert.
bool IsTextType(DWORD type);

/// Data as the narrow calls give it out, from the form that the hive holds.
std::string NarrowData(DWORD type, std::string_view data);

/// A name and the form in which names are compared: upper case by Unicode's simple mapping, as for file names.
struct Name {
    std::string text;
    std::string folded;
};

Name MakeName(std::string text);

/// The folded form of a narrow name, made without memory from the heap for ASCII names of a usual length: reading a
/// value spends most of its time here.
class FoldedName {
public:
    /// @param name null means the empty name.
    explicit FoldedName(LPCSTR name);
    FoldedName(const FoldedName&) = delete;
    FoldedName& operator=(const FoldedName&) = delete;

    std::string_view View() const { return m_view; }

private:
    std::array<char, 128> m_room;
    std::string m_long;
    std::string_view m_view;
};

/// Splits a path of keys at its backslashes. Several in a row count as one, and those at the end do not count.
/// @throws RegistryFailure ERROR_BAD_PATHNAME for one that begins with a backslash.
std::vector<Name> SplitKeyPath(LPCSTR path);

} // namespace kel::platform
