#pragma once

#include <string>
#include <string_view>

namespace kel::platform {

/// The name pattern of a directory search, in the language that FindFirstFileA describes.
class NamePattern {
public:
    /// Whether @p name, the last component of a path, is a pattern rather than a name.
    static bool HasWildcards(std::string_view name);

    /// @param pattern UTF-8, as the caller wrote it.
    explicit NamePattern(std::string_view pattern);

    /// @param name an entry's name in UTF-8.
    bool Matches(std::string_view name) const;

    /// Whether the folder's own entries "." and ".." match.
    bool MatchesDots() const;

private:
    // Upper case; '<', '>' and '"' stand for the DOS forms of '*', '?' and '.'.
    std::u16string m_expression;
};

} // namespace kel::platform
