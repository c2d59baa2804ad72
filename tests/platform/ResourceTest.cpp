#include "Workplace.h"

#include <cstring>

namespace {

const char* const kTexts = KELCORE_TEST_MODULES "/texts.dll";

/// Text of a resource, or its error in angle brackets.
std::string Find(HMODULE module, LPCSTR type, LPCSTR name, WORD language = 0) {
    const HRSRC resource = FindResourceExA(module, type, name, language);
    if (!resource)
        return "<" + std::to_string(GetLastError()) + ">";
    return {static_cast<const char*>(LockResource(LoadResource(module, resource))), SizeofResource(module, resource)};
}

/// The fixture's bytes with some changed, loaded from another file.
class Damaged {
public:
    Damaged() : m_bytes(Workplace::Read(kTexts)) {}

    std::size_t Find(const std::string& part, std::size_t from = 0) const {
        const std::size_t at = m_bytes.find(part, from);
        REQUIRE(at != std::string::npos);
        return at;
    }
    std::uint32_t At(std::size_t offset) const {
        std::uint32_t value;
        std::memcpy(&value, m_bytes.data() + offset, 4);
        return value;
    }
    void Put(std::size_t offset, std::uint32_t value) { std::memcpy(m_bytes.data() + offset, &value, 4); }

    HMODULE Load() const {
        Workplace::Write("damaged.dll", m_bytes);
        return LoadLibraryExA(".\\damaged.dll", nullptr, LOAD_LIBRARY_AS_DATAFILE);
    }

private:
    std::string m_bytes;
};

} // namespace

TEST_CASE("resources are found by numbers and by names without regard to case") {
    const HMODULE module = LoadLibraryA(kTexts);
    REQUIRE(module != nullptr);
    struct Row {
        LPCSTR type;
        LPCSTR name;
        const char* text;
    };
    const LPSTR data = RT_RCDATA;
    const Row rows[] = {
        {data, "all", "0000"},
        {data, "ALL", "0000"},
        {"#10", "aLL", "0000"},
        {"PICTURE", MAKEINTRESOURCEA(7), "numbered"},
        {"picture", "#7", "numbered"},
        {"picture", "#007", "numbered"},
        {"Picture", "\xC3\xA9lan", "named"},
        {MAKEINTRESOURCEA(400), "#300", "both numbers"},
        {RT_BITMAP, MAKEINTRESOURCEA(301), "\x28\0\0\0\x01"},
        {data, "", "<1814>"},
        {data, "al", "<1814>"},
        {data, "alll", "<1814>"},
        {data, nullptr, "<1814>"},
        {data, "#", "<1814>"},
        {"picture", "#65536", "<87>"},
        {"picture", "#70000000000000", "<87>"},
        {MAKEINTRESOURCEA(401), "#300", "<1813>"},
        {nullptr, "all", "<1813>"},
        {"nope", "all", "<1813>"},
    };
    for (const Row& row : rows) {
        CAPTURE(row.text);
        if (GetACP() == 65001 || row.name == nullptr || IS_INTRESOURCE(row.name) || row.name[0] != '\xC3')
            CHECK(Find(module, row.type, row.name).substr(0, std::strlen(row.text)) == row.text);
    }
    CHECK(SizeofResource(module, FindResourceA(module, MAKEINTRESOURCEA(301), RT_BITMAP)) == 6);
    CHECK(FreeLibrary(module));
    CHECK(Find(GetModuleHandleA(nullptr), data, "all") == "<1812>");
    CHECK(Find(reinterpret_cast<HMODULE>(ULONG_PTR{0x12340000}), data, "all") == "<1812>");
}

TEST_CASE("a language is taken exactly, then without its country, then neutral, then what suits the user") {
    const HMODULE module = LoadLibraryA(kTexts);
    REQUIRE(module != nullptr);
    struct Row {
        const char* name;
        WORD language;
        const char* text;
    };
    const Row rows[] = {
        {"all", 0, "0000"},         {"all", 0x0407, "0407"},      {"all", 0x0807, "0000"},
        {"all", 0x0809, "0809"},    {"all", 0x0C09, "0000"},      {"mixed", 0, "0009"},
        {"mixed", 0x0409, "0009"},  {"mixed", 0x0807, "<1815>"},  {"german", 0, "0407"},
        {"german", 0x0C07, "0c07"}, {"german", 0x0807, "<1815>"}, {"german", 0x0411, "<1815>"},
        {"french", 0x040C, "000c"}, {"french", 0, "000c"},        {"far", 0, "0407"},
        {"far", 0x0009, "<1815>"},  {"far", 0x0400, "0407"},
    };
    for (const Row& row : rows) {
        CAPTURE(row.name);
        CAPTURE(row.language);
        if (GetSystemDefaultLangID() == 0x0409)
            CHECK(Find(module, RT_RCDATA, row.name, row.language) == row.text);
    }
    CHECK(FreeLibrary(module));
}

TEST_CASE("what is no resource of the module has neither size nor block") {
    if (!kOnLayer)
        return;
    const HMODULE module = LoadLibraryA(kTexts);
    const HMODULE other = LoadLibraryA(KELCORE_TEST_MODULES "/plain.dll");
    const HRSRC foreign = FindResourceA(other, MAKEINTRESOURCEA(1), RT_RCDATA);
    for (const HRSRC resource :
         {HRSRC{}, foreign, reinterpret_cast<HRSRC>(ULONG_PTR{8}), reinterpret_cast<HRSRC>(-8)}) {
        CHECK(ErrorOf(SizeofResource(module, resource) != 0) == ERROR_RESOURCE_DATA_NOT_FOUND);
        CHECK(ErrorOf(LoadResource(module, resource) != nullptr) == ERROR_RESOURCE_DATA_NOT_FOUND);
    }
    CHECK(FreeLibrary(module));
    CHECK(FreeLibrary(other));
}

TEST_CASE("damaged trees and records are refused") {
    if (!kOnLayer) // elsewhere the loader believes what it reads
        return;
    const Workplace place;
    // The section header of .rsrc gives the place in the file and in memory; the tree begins there.
    const Damaged whole;
    const std::size_t header = whole.Find(".rsrc");
    const std::size_t tree = whole.At(header + 20);
    const std::uint32_t address = whole.At(header + 12);
    struct Row {
        std::size_t offset;
        std::uint32_t value;
        std::string result;
    };
    const std::size_t entries = tree + 16;
    const Row rows[] = {
        {tree + 12, 0xFFFFFFFF, "<1812>"},                       // more entries than bytes
        {entries + 4, 0x7FFFFFFF, "<1813>"},                     // data in place of a directory
        {entries + 4, 0xFFFFFFF0, "<1813>"},                     // a directory behind the end
        {entries + 4, 0x80000000, "<1814>"},                     // a directory that is its own parent
        {entries, 0x80000000 | whole.At(header + 16), "<1813>"}, // a name behind the end
        {header + 12, address + 0x1000, "<193>"},                // no section where the tree should be
        {header + 20, 0xFFFFFF00, "<193>"},                      // a section behind the end
    };
    for (const Row& row : rows) {
        CAPTURE(row.offset);
        CAPTURE(row.value);
        Damaged image;
        image.Put(row.offset, row.value);
        const HMODULE module = image.Load();
        CHECK((module ? Find(module, "PICTURE", "#7") : "<" + std::to_string(GetLastError()) + ">") == row.result);
        if (module)
            CHECK(FreeLibrary(module));
    }
}
