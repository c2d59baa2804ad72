#include <kelcore/registry.h>

#include <algorithm>

bool RegistryKey::NameMatch(const WideString& name, const WideString& pattern) {
    const unsigned short* unit = name.data();
    const unsigned short* wanted = pattern.data();
    const unsigned short* const end = wanted + std::min(name.size(), pattern.size());
    for (; wanted != end; ++unit, ++wanted) {
        // Most units agree, so that this is the one question they are asked.
        if (*wanted == *unit && *wanted != '*')
            continue;
        if (*wanted != '?')
            return *wanted == '*';
    }
    return name.size() == pattern.size();
}
