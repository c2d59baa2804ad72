#include "bench/module/Texts.h"
#include "bench/support/Areas.h"
#include "bench/support/Random.h"

#include <kelcore/file.h>
#include <kelcore/runtime/modules.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>

namespace kel::bench {
namespace {

constexpr unsigned kTexts = 1000;
constexpr unsigned kModules = 10;
constexpr unsigned short kEnglish = 0x0409;
constexpr unsigned short kGerman = 0x0407;

// A loaded library as a module, whose language file for German has ".de" in front of its extension.
class TextModule : public ModuleBase {
public:
    explicit TextModule(const std::string& path) : m_library(LoadLibraryA(path.c_str())) { Init(m_library); }
    ~TextModule() override {
        Free();
        FreeLibrary(m_library);
    }
    bool GetLanguageDLLName(unsigned short language, String& path) override {
        if (language == kGerman)
            path = File::SwitchExtension(path, StdA2W(".de.dll"));
        return language == kGerman;
    }

private:
    HINSTANCE m_library;
};

// The modules, each of a file of its own.
class ModuleFolder {
public:
    ModuleFolder() : m_path(std::filesystem::temp_directory_path() / "kelcore_bench_modules") {
        std::filesystem::create_directories(m_path);
        for (unsigned i = 0; i != kModules; ++i)
            Copy(std::to_string(i));
    }
    ModuleFolder(const ModuleFolder&) = delete;
    ModuleFolder& operator=(const ModuleFolder&) = delete;
    ~ModuleFolder() {
        m_modules.clear();
        std::filesystem::remove_all(m_path);
    }
    TextModule& First() const { return *m_modules.front(); }

private:
    void Copy(const std::string& name) {
        const auto options = std::filesystem::copy_options::overwrite_existing;
        const std::filesystem::path source = KELCORE_BENCH_MODULES;
        const std::filesystem::path module = m_path / (name + ".dll");
        std::filesystem::copy_file(source / "texts.dll", module, options);
        std::filesystem::copy_file(source / "german.dll", m_path / (name + ".de.dll"), options);
        m_modules.push_back(std::make_unique<TextModule>(module.string()));
    }

    std::filesystem::path m_path;
    std::vector<std::unique_ptr<TextModule>> m_modules;
};

std::shared_ptr<ModuleFolder> Modules() {
    static std::weak_ptr<ModuleFolder> shared;
    std::shared_ptr<ModuleFolder> modules = shared.lock();
    if (modules == nullptr)
        shared = modules = std::make_shared<ModuleFolder>();
    return modules;
}

std::string Bytes(const String& text) {
    return StdW2A(text);
}

Call Strings() {
    ModuleBase::SetLanguage(kGerman, nullptr);
    return ForEach(
        TextNumbers(),
        [modules = Modules()](unsigned number) {
            String text;
            modules->First().LoadStringA(number, text, /*first*/ 0, /*last*/ -1);
            return text;
        },
        Bytes);
}

Call Switching() {
    const auto run = [modules = Modules()] {
        ModuleBase::SetLanguage(kEnglish, nullptr);
        ModuleBase::SetLanguage(kGerman, nullptr);
    };
    return {run};
}

Call Version() {
    return {[path = String(StdA2W(KELCORE_BENCH_MODULES "/texts.dll"))] {
        unsigned long ms = 0;
        unsigned long ls = 0;
        ModuleBase::GetModuleVersion(path, ms, ls);
        benchmark::DoNotOptimize(ms + ls);
    }};
}

// Reading the whole file.
Call FileRead() {
    return {[] {
        char bytes[1 << 16];
        std::FILE* const file = std::fopen(KELCORE_BENCH_MODULES "/texts.dll", "rb");
        while (std::fread(bytes, 1, sizeof bytes, file) == sizeof bytes)
            benchmark::DoNotOptimize(bytes);
        std::fclose(file);
    }};
}

const Enter<Catalogue> entered{{"kelcore", &Strings}};

} // namespace

std::vector<unsigned> TextNumbers() {
    std::vector<unsigned> numbers(kTexts);
    for (unsigned i = 0; i != kTexts; ++i)
        numbers[i] = i;
    Random random(8);
    for (unsigned i = kTexts; i > 1; --i)
        std::swap(numbers[i - 1], numbers[random.Below(i)]);
    return numbers;
}

void AddModuleJobs() {
    for (const Catalogue& catalogue : Contenders<Catalogue>())
        AddJob("module", catalogue.who, "1,000 strings", catalogue.make);
    AddJob("module", "kelcore", "switch 10 modules twice", &Switching);
    AddJob("module", "kelcore", "version of a file", &Version);
    AddJob("module", "limit-read", "version of a file", &FileRead);
}

} // namespace kel::bench
