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

/// Asks a function for language files.
using LanguageRule = std::function<bool(unsigned short language, String& path)>;

/// The file @p name beside the one at @p path.
inline String Beside(const String& path, const char* name) {
    return File::MakePath(File::GetDirname(path), StdA2W(name));
}

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

struct Provider : ILanguageDLLName {
    explicit Provider(LanguageRule answer = SampleLanguages) : rule(std::move(answer)) {}
    bool GetLanguageDLLName(unsigned short language, String& path) override { return rule(language, path); }
    LanguageRule rule;
};

/// Ends a test's language: English again, and no provider.
struct EnglishAfterwards {
    EnglishAfterwards() { ModuleBase::SetLanguage(0x0409, nullptr); }
    EnglishAfterwards(const EnglishAfterwards&) = delete;
    EnglishAfterwards& operator=(const EnglishAfterwards&) = delete;
    ~EnglishAfterwards() { ModuleBase::SetLanguage(0x0409, nullptr); }
};

/// One use of a library.
class Library {
public:
    explicit Library(const std::string& name) : m_handle(LoadLibraryA(SampleFile(name).c_str())) {
        CHECK((m_handle != nullptr));
    }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
    ~Library() { FreeLibrary(m_handle); }
    HINSTANCE Handle() const { return m_handle; }

private:
    HINSTANCE m_handle;
};

/// A module whose file is module.dll.
class SampleModule : private Library, public ModuleBase {
public:
    explicit SampleModule(LanguageRule rule = {}) : Library("module.dll"), m_rule(std::move(rule)) {
        Init(Library::Handle());
    }
    ~SampleModule() override { Free(); }

    bool GetLanguageDLLName(unsigned short language, String& path) override { return m_rule && m_rule(language, path); }

    using Library::Handle;
    using ModuleBase::Free;
    using ModuleBase::GetAccelerators;
    using ModuleBase::GetModules;
    using ModuleBase::Init;
    using ModuleBase::SetAccelerators;

    bool IsInItsOwnLanguage() const { return m_hResource == m_hInstance; }

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
