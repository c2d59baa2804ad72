#include "Workplace.h"

#include <cstring>
#include <tuple>

namespace {

const char* const kTexts = KELCORE_TEST_MODULES "/texts.dll";

/// Text of a resource, or its error in angle brackets.
std::string Find(HMODULE module, LPCSTR type, LPCSTR name, WORD language = 0) {
    const HRSRC resource = FindResourceExA(module, type, name, language);
    if (!resource)
        return "<" + std::to_string(GetLastError()) + ">";
    return {static_cast<const char*>(LockResource(LoadResource(module, resource))), SizeofResource(module, resource)};
}

} // namespace

TEST_CASE("resources are found by numbers and by names without regard to case") {
    const HMODULE module = LoadLibraryA(kTexts);
    REQUIRE(module != nullptr);
    const auto finds = [&](LPCSTR type, LPCSTR name, const std::string& text) {
        CHECK_MESSAGE(Find(module, type, name) == text, text);
    };
    finds(RT_RCDATA, "all", "0000");
    finds("#10", "aLL", "0000");
    finds("PICTURE", MAKEINTRESOURCEA(7), "numbered");
    finds("picture", "#007", "numbered");
    if (GetACP() == CP_UTF8)
        finds("Picture", "\u00E9lan", "named");
    finds(MAKEINTRESOURCEA(400), "#300", "both numbers");
    for (const LPCSTR none : {"", "al", "alll", static_cast<LPCSTR>(nullptr), "#"})
        finds(RT_RCDATA, none, "<1814>");
    finds("picture", "#65536", "<87>");
    for (const LPCSTR none : {MAKEINTRESOURCEA(401), static_cast<LPSTR>(nullptr), const_cast<LPSTR>("nope")})
        finds(none, "all", "<1813>");
    CHECK(FreeLibrary(module));
    CHECK(Find(reinterpret_cast<HMODULE>(ULONG_PTR{0x12340000}), RT_RCDATA, "all") == "<1812>");
}

TEST_CASE("a language is taken exactly, then without its country, then neutral, then what suits the user") {
    if (GetSystemDefaultLangID() != 0x0409)
        return;
    const HMODULE module = LoadLibraryA(kTexts);
    const std::tuple<const char*, WORD, const char*> rows[] = {
        {"all", 0x0407, "0407"},    {"all", 0x0807, "0000"}, {"mixed", 0, "0009"},      {"german", 0, "0407"},
        {"german", 0x0C07, "0c07"}, {"french", 0, "000c"},   {"far", 0x0009, "<1815>"}, {"far", 0x0400, "0407"}};
    for (const auto& [name, language, text] : rows)
        CHECK_MESSAGE(Find(module, RT_RCDATA, name, language) == text, name, " ", language);
    CHECK(FreeLibrary(module));
}

TEST_CASE("what is no resource of the module has neither size nor block") {
    if (!kOnLayer)
        return;
    const HMODULE module = LoadLibraryA(kTexts), other = LoadLibraryA(KELCORE_TEST_MODULES "/plain.dll");
    const HRSRC foreign = FindResourceA(other, MAKEINTRESOURCEA(1), RT_RCDATA);
    for (const HRSRC none : {HRSRC{}, foreign, reinterpret_cast<HRSRC>(ULONG_PTR{8}), reinterpret_cast<HRSRC>(-8)}) {
        CHECK(ErrorOf(SizeofResource(module, none) != 0) == ERROR_RESOURCE_DATA_NOT_FOUND);
        CHECK(ErrorOf(LoadResource(module, none) != nullptr) == ERROR_RESOURCE_DATA_NOT_FOUND);
    }
    CHECK((FreeLibrary(module) && FreeLibrary(other)));
}

TEST_CASE("damaged trees and records are refused") {
    if (!kOnLayer) // elsewhere the loader believes what it reads
        return;
    const Workplace place;
    // The section header of .rsrc gives the place in the file and in memory; the tree begins there.
    const std::string image = Workplace::Read(kTexts);
    const auto at = [&](std::size_t offset) {
        std::uint32_t value;
        std::memcpy(&value, image.data() + offset, sizeof value);
        return value;
    };
    const std::size_t header = image.find(".rsrc"), tree = at(header + 20), entries = tree + 16;
    const auto damages = [&](std::size_t offset, std::uint32_t value, const std::string& result) {
        INFO(offset, " ", value);
        std::string damaged = image;
        std::memcpy(damaged.data() + offset, &value, sizeof value);
        Workplace::Write("damaged.dll", damaged);
        const HMODULE module = LoadLibraryExA(".\\damaged.dll", nullptr, LOAD_LIBRARY_AS_DATAFILE);
        CHECK((module ? Find(module, "PICTURE", "#7") : "<" + std::to_string(GetLastError()) + ">") == result);
        CHECK((!module || FreeLibrary(module)));
    };
    damages(tree + 12, 0xFFFFFFFF, "<1812>");                 // more entries than bytes
    damages(entries + 4, 0x7FFFFFFF, "<1813>");               // data in place of a directory
    damages(entries + 4, 0xFFFFFFF0, "<1813>");               // a directory behind the end
    damages(entries + 4, 0x80000000, "<1814>");               // a directory that is its own parent
    damages(entries, 0x80000000 | at(header + 16), "<1813>"); // a name behind the end
    damages(header + 12, at(header + 12) + 0x1000, "<193>");  // no section where the tree should be
    damages(header + 20, 0xFFFFFF00, "<193>");                // a section behind the end
}
