#include "PlainName.h"

#include <iterator>

namespace kelexamples {

bool IsPlainName(const WideString& name) {
    static const unsigned short kForbidden[] = {'\\', '/', ':', 0};
    const WideString dot(1, '.');
    return !name.empty() && name != dot && name != dot + dot &&
           name.find_first_of(kForbidden, 0, std::size(kForbidden)) == WideString::npos;
}

} // namespace kelexamples
