#include <kelcore/registry.h>

#include <algorithm>

bool RegistryKey::NameMatch(const WideString& name, const WideString& pattern) {
    const std::size_t common = std::min(name.size(), pattern.size());
    for (std::size_t i = 0; i != common; ++i) {
        if (pattern[i] == '*')
            return true;
        if (pattern[i] != '?' && pattern[i] != name[i])
            return false;
    }
    return name.size() == pattern.size();
}
