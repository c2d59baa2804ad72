#include "Commands.h"

namespace kelalbum {

WideString Arguments::Option(const std::string& name, const WideString& otherwise) const {
    const auto found = options.find(name);
    return found == options.end() ? otherwise : found->second;
}

} // namespace kelalbum
