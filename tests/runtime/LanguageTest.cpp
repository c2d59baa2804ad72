#include "tests/runtime/SampleModule.h"

#include "tests/support/Faults.h"
#include "tests/support/MessageBoxes.h"

#include <doctest/doctest.h>

#include <memory>
#include <utility>

namespace {

// What happened, a word or a few each, ended by a semicolon.
using Log = std::string;

// Notes its name when it shall reload, then acts.
struct Target : ResourceTarget {
    Target(Log& reloads, const char* label, std::function<void()> act = {})
        : log(reloads), name(label), action(std::move(act)) {}
    void ReloadResources() override {
        log += name + "; ";
        if (action)
            action();
    }
    Log& log;
    std::string name;
    std::function<void()> action;
};

// A rule that notes that it was asked, and by which path, and gives @p file ("" for the path alone, null for nothing).
LanguageRule Answering(Log& log, const char* who, const char* file, bool answer) {
    return [&log, who, file, answer](unsigned short language, String& path) {
        log += who + (" " + std::to_string(language) + " ") + StdW2A(File::GetBasename(path, {})) + "; ";
        if (file != nullptr)
            path = Beside(path, file);
        return answer;
    };
}

} // namespace

TEST_CASE("the provider is asked first, then the module, with the path as the provider left it") {
    const auto asks = [](const char* given, bool gives, const char* own, bool owns, Log expected, const char* text) {
        CAPTURE(expected);
        Log asked;
        Provider provider(Answering(asked, "provider", given, gives));
        ModuleBase::SetLanguage(0x0407, &provider);
        const SampleModule module(Answering(asked, "own", own, owns));
        CHECK(asked == expected);
        CHECK(module.Text(16) == text);
        CHECK((module.m_hResource == module.m_hInstance) == (text == std::string("sixteen")));
        asked.clear();
        ModuleBase::SetLanguage(0x0407, &provider);
        CHECK((asked == expected && module.Text(16) == text));
    };
    asks("german.dll", true, nullptr, false, "provider 1031 module.dll; ", "sechzehn");
    asks(nullptr, false, "german.dll", true, "provider 1031 module.dll; own 1031 module.dll; ", "sechzehn");
    asks("german.dll", false, nullptr, true, "provider 1031 module.dll; own 1031 german.dll; ", "sechzehn");
    asks("german.dll", false, nullptr, false, "provider 1031 module.dll; own 1031 german.dll; ", "sixteen");
    asks("missing.dll", true, nullptr, true, "provider 1031 module.dll; ", "sixteen");
}

TEST_CASE("a new language reloads all modules, then tells the targets in their order") {
    Log log;
    Provider provider, silent([](unsigned short, String&) { return false; });
    SampleModule first([&](unsigned short, String&) { return log += "first; ", false; });
    SampleModule second([&](unsigned short, String&) { return log += "second; ", false; });
    const Target a(log, "a", [&] { log += first.Text(16) + " " + second.Text(16) + "; "; });
    const Target b(log, "b");
    log.clear();
    ModuleBase::SetLanguage(0x0407, &silent);
    CHECK(log == "first; second; a; sixteen sixteen; b; ");
    log.clear();
    ModuleBase::SetLanguage(0x0407, &provider);
    CHECK(log == "a; sechzehn sechzehn; b; ");
    CHECK(first.Text(48) == "(none)");
    ModuleBase::SetLanguage(0x0411, &provider);
    CHECK(first.Text(48) == "only here");
    CHECK(ModuleBase::GetLanguage() == 0x0411);
}

TEST_CASE("a language file of another version is refused with one warning a load") {
    const kel::test::MessageBoxes boxes(IDOK);
    Provider provider;
    ModuleBase::SetLanguage(0x040C, &provider);
    const SampleModule module;
    CHECK((boxes.Seen().size() == 1 && module.Text(16) == "sixteen"));
    ModuleBase::SetLanguage(0x040C, &provider);
    REQUIRE(boxes.Seen().size() == 2);
    const kel::test::SeenBox& box = boxes.Seen().back();
    CHECK(box.text == "The version of the language file '" + StdW2A(Beside(module.GetPath(), "outdated.dll")) +
                          "' (1.2.0.0) is not the same as the application version (1.2.0.1).\nThe application will use "
                          "the default language.");
    CHECK(box.caption == "Warning");
    CHECK((box.buttons == std::vector{IDOK} && box.hasIcon));
    CHECK(GetModuleHandleA(SampleFile("outdated.dll").c_str()) == nullptr);
}

TEST_CASE("targets and modules may come and go while the language changes") {
    Log log;
    std::unique_ptr<Target> gone, come, self;
    std::unique_ptr<SampleModule> module;
    const Target a(log, "a", [&] {
        gone.reset();
        if (come == nullptr)
            come = std::make_unique<Target>(log, "come");
    });
    gone = std::make_unique<Target>(log, "gone");
    auto copied = std::make_unique<Target>(log, "copied");
    const Target copy(*copied);
    copied.reset();
    self = std::make_unique<Target>(log, "self", [&] { std::exchange(self, nullptr)->name.clear(); });
    bool nested = false;
    const Target b(log, "b", [&] {
        if (!std::exchange(nested, true))
            ModuleBase::SetLanguage(0x040C, nullptr);
    });
    // A provider that ends a module which has yet to be asked for.
    auto ended = std::make_unique<SampleModule>();
    Provider provider([&](unsigned short, String&) { return ended.reset(), false; });
    module = std::move(ended);
    ended = std::make_unique<SampleModule>();
    ModuleBase::SetLanguage(0x0407, &provider);
    CHECK(log == "a; copied; self; b; a; copied; b; come; ");
    CHECK(module->Text(16) == "sixteen");
    CHECK(module->GetModules().size() == 1);
}

TEST_CASE("files named by answers that are the module itself, or change the language, are let go with the module") {
    bool nested = false;
    Provider provider([](unsigned short, String&) { return true; });
    ModuleBase::SetLanguage(0x0407, &provider);
    CHECK(SampleModule().Text(16) == "sixteen");
    CHECK(GetModuleHandleA(SampleFile("module.dll").c_str()) == nullptr);
    provider.rule = [&](unsigned short language, String& path) {
        if (!std::exchange(nested, true))
            ModuleBase::SetLanguage(0x0407, &provider);
        return SampleLanguages(language, path);
    };
    CHECK(SampleModule().Text(16) == "sechzehn");
    CHECK(GetModuleHandleA(SampleFile("german.dll").c_str()) == nullptr);
}

TEST_CASE("a failing platform call leaves a module with its own texts or those of its language, and nothing open") {
    const kel::test::MessageBoxes boxes(IDOK);
    Provider provider;
    kel::test::WithEachCallFailing(ERROR_NOT_ENOUGH_MEMORY, [&] {
        SampleModule module;
        if (module.m_hInstance == nullptr)
            return;
        ModuleBase::SetLanguage(0x0407, &provider);
        String text(u"left over"_w);
        const bool found = text.LoadStringA(16, 0, -1, &module);
        CHECK((found ? text == u"sechzehn"_w || text == u"sixteen"_w : text.empty()));
        CHECK((module.LoadAcceleratorsA(3) == (module.GetAccelerators() != nullptr)));
        module.LoadAcceleratorsA(0);
        unsigned long size = 0;
        const void* const page = module.LoadResource(7, RT_HTML, &size);
        CHECK((page == nullptr || size == 0 || size == 8 || size == 11));
    });
}
