#pragma once

#include <kelcore/runtime/modules.h>

#include <string>

/// Language files lie beside their modules and are named after them: NAME.de.dll for German, NAME.ja.dll for Japanese,
/// NAME.fr.dll for French. Every other language is that of the modules' own texts.
class LanguageFiles : public ILanguageDLLName {
public:
    bool GetLanguageDLLName(unsigned short language, String& path) override;

    /// The language identifier of "de", "ja", "fr"; that of English for everything else.
    static unsigned short Identifier(const std::string& name);
};
