#pragma once

#include "tests/support/Text.h"

#include <kelcore/file.h>
#include <kelcore/runtime/modules.h>

#include <functional>
#include <string>

/// The path of a file made from tests/data/languages.
inline std::string SampleFile(const std::string& name) {
    return std::string(KELCORE_TEST_LANGUAGES) + "/" + name;
}

/// The file @p name beside the one at @p path.
inline String Beside(const String& path, const char* name) {
    return File::MakePath(File::GetDirname(path), StdA2W(name));
}

/// Answers for language files.
using LanguageRule = std::function<bool(unsigned short language, String& path)>;

/// Names german.dll for German, outdated.dll for French and a file that is missing for Japanese.
inline bool SampleLanguages(unsigned short language, String& path) {
    const char* const name = language == 0x0407   ? "german.dll"
                             : language == 0x040C ? "outdated.dll"
                             : language == 0x0411 ? "missing.dll"
                                                  : nullptr;
    if (name != nullptr)
        path = Beside(path, name);
    return name != nullptr;
}

/// Asks its rule. When it goes, the process speaks English without a provider again.
struct Provider : ILanguageDLLName {
    explicit Provider(LanguageRule answer = SampleLanguages) : rule(std::move(answer)) {}
    ~Provider() { ModuleBase::SetLanguage(0x0409, nullptr); }
    bool GetLanguageDLLName(unsigned short language, String& path) override { return rule(language, path); }
    LanguageRule rule;
};

/// A module with what the tests look at.
class TestModule : public ModuleBase {
public:
    explicit TestModule(HINSTANCE instance, LanguageRule rule = {}) : m_rule(std::move(rule)) { Init(instance); }
    ~TestModule() override { Free(); }
    bool GetLanguageDLLName(unsigned short language, String& path) override { return m_rule && m_rule(language, path); }

    using ModuleBase::Free;
    using ModuleBase::GetAccelerators;
    using ModuleBase::GetModules;
    using ModuleBase::Init;
    using ModuleBase::m_hInstance;
    using ModuleBase::m_hResource;
    using ModuleBase::SetAccelerators;

    /// String @p id, "(none)" when it is not found.
    std::string Text(unsigned id, int first = 0, int last = -1) const {
        String text(u"left over"_w);
        const bool found = LoadStringA(id, text, first, last);
        CHECK((found || text.empty()));
        return found ? StdW2A(text) : "(none)";
    }

    /// The bytes of a resource as text.
    std::string Bytes(unsigned id, const char* type) const {
        unsigned long size = 0;
        void* const block = LoadResource(id, type, &size);
        return block == nullptr ? "(none)" : std::string(static_cast<const char*>(LockResource(block)), size);
    }

private:
    LanguageRule m_rule;
};

/// A use of module.dll.
struct SampleLibrary {
    HINSTANCE handle = LoadLibraryA(SampleFile("module.dll").c_str());
    ~SampleLibrary() { FreeLibrary(handle); }
};

/// A module whose file is module.dll.
struct SampleModule : private SampleLibrary, public TestModule {
    explicit SampleModule(LanguageRule rule = {}) : TestModule(handle, std::move(rule)) {}
};
