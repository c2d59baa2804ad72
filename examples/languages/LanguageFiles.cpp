#include "LanguageFiles.h"

#include <kelcore/file.h>

namespace {

constexpr unsigned short kEnglish = 0x0409;

constexpr struct {
    const char* name;
    unsigned short identifier;
} kLanguages[] = {{"de", 0x0407}, {"ja", 0x0411}, {"fr", 0x040C}};

} // namespace

bool LanguageFiles::GetLanguageDLLName(unsigned short language, String& path) {
    for (const auto& known : kLanguages) {
        if (known.identifier == language) {
            path = File::SwitchExtension(path, StdA2W("." + std::string(known.name) + ".dll"));
            return true;
        }
    }
    return false;
}

unsigned short LanguageFiles::Identifier(const std::string& name) {
    for (const auto& known : kLanguages)
        if (known.name == name)
            return known.identifier;
    return kEnglish;
}
