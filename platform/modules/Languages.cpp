#include "platform/modules/LocaleLanguages.h"

#include <kelcore/platform/languages.h>

#include <cstdlib>

using namespace kel::platform;

namespace {

// The variables in the order in which the host's own programs look at them.
std::string_view MessageLocale() {
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value != nullptr && *value != '\0')
            return value;
    }
    return "C";
}

} // namespace

LANGID WINAPI GetSystemDefaultLangID(void) {
    static const LANGID language = LanguageOfLocale(MessageLocale());
    return language;
}
