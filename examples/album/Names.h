#pragma once

#include <kelcore/text.h>

#include <set>

namespace kelalbum {

/// Whether two names are the same to somebody who does not look at capitals.
bool AreSameNames(const WideString& one, const WideString& other);

/// Names that were given away, so that none is given twice: not even in other capitals, which some file systems do not
/// tell apart.
class GivenNames {
public:
    /// @return @p name, or "photo (2).jpg" for "photo.jpg" if that was given before, and so on.
    WideString Give(const WideString& name);

private:
    std::set<WideString> m_given; // in small letters
};

} // namespace kelalbum
