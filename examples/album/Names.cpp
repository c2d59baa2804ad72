#include "Names.h"

#include <kelcore/file.h>

namespace kelalbum {
namespace {

WideString Folded(const WideString& name) {
    String folded(name);
    folded.ToLower();
    return folded;
}

} // namespace

bool AreSameNames(const WideString& one, const WideString& other) {
    return Folded(one) == Folded(other);
}

WideString GivenNames::Give(const WideString& name) {
    const WideString extension = File::GetFileExtension(name);
    const WideString title = name.substr(0, name.size() - extension.size());
    WideString given = name;
    for (unsigned count = 2; !m_given.insert(Folded(given)).second; ++count)
        given = title + StdA2W(" (" + std::to_string(count) + ')') + extension;
    return given;
}

} // namespace kelalbum
