#include "Workplace.h"

#include <cstring>
#include <vector>

namespace {

using namespace std::string_literals;

const std::string kModules = KELCORE_TEST_MODULES "/";

std::vector<char> VersionOf(const std::string& file) {
    DWORD ignored = 777;
    const DWORD size = GetFileVersionInfoSizeA(file.c_str(), &ignored);
    CHECK(ignored == 0);
    std::vector<char> block(size);
    if (size != 0)
        CHECK(GetFileVersionInfoA(file.c_str(), 0, size, block.data()));
    return block;
}

/// A value's bytes, or its error in angle brackets.
std::string Query(const std::vector<char>& block, const std::string& path) {
    void* value = nullptr;
    UINT length = 777;
    if (!VerQueryValueA(block.data(), path.c_str(), &value, &length))
        return "<" + std::to_string(GetLastError()) + ">";
    const char* bytes = static_cast<const char*>(value);
    CHECK((bytes >= block.data() && bytes + length <= block.data() + block.size()));
    return {bytes, length};
}

const std::string kEnglish = "\\StringFileInfo\\040904b0\\";

} // namespace

TEST_CASE("a file's version record gives numbers, translations and texts") {
    for (const char* file : {"texts.dll", "answer.dll"}) {
        CAPTURE(file);
        const std::vector<char> block = VersionOf(kModules + file);
        REQUIRE(!block.empty());
        const std::string root = Query(block, "\\");
        REQUIRE(root.size() == sizeof(VS_FIXEDFILEINFO));
        VS_FIXEDFILEINFO fixed;
        std::memcpy(&fixed, root.data(), sizeof fixed);
        CHECK((fixed.dwFileVersionMS == 0x00010002 && fixed.dwProductVersionLS == 0x0007FFFF));
        const auto gives = [&](const std::string& path, const std::string& value) {
            CHECK_MESSAGE(Query(block, path) == value, path);
        };
        gives("", root);
        gives("varfileinfo\\translation\\", std::string("\x09\x04\xB0\x04\x07\x04\xB0\x04", 8));
        if (GetACP() == CP_UTF8)
            gives(kEnglish + "ProductName", std::string("Gr\u00FCn \u65E5\u672C") + '\0');
        gives(kEnglish + "COMMENTS",
              std::string("a longer text, so that the next one begins at another offset") + '\0');
        gives(kEnglish + "Empty", std::string(1, '\0'));
        gives("\\stringfileinfo\\040704B0\\productname", std::string("Gelb") + '\0');
        for (const std::string& none :
             {"\\none"s, "\\VarFileInfo\\Translatio"s, kEnglish + "None", kEnglish + "ProductName\\x"})
            gives(none, "<1813>");
    }
}

TEST_CASE("a file without a version is refused with the codes of Windows") {
    const Workplace place;
    Workplace::Write("text.txt", "text");
    const auto gives = [](LPCSTR name, DWORD error) {
        CHECK(ErrorOf(GetFileVersionInfoSizeA(name, nullptr) != 0) == error);
    };
    gives("none.dll", ERROR_FILE_NOT_FOUND);
    gives("", ERROR_BAD_PATHNAME);
    gives(".", ERROR_ACCESS_DENIED);
    gives("text.txt", ERROR_RESOURCE_DATA_NOT_FOUND);
    gives(nullptr, ERROR_INVALID_PARAMETER);
    if (kOnLayer)
        gives(KELCORE_TEST_MODULES "/plain.dll", ERROR_RESOURCE_TYPE_NOT_FOUND);
}

TEST_CASE("a block that is too small holds what fits") {
    const std::string file = kModules + "texts.dll";
    for (const DWORD size : {0, 1, 92, 200}) {
        CAPTURE(size);
        std::vector<char> block(size + 1, '#');
        CHECK(GetFileVersionInfoA(file.c_str(), 0, size, block.data()));
        CHECK(block[size] == '#');
        CHECK((size < 92 || Query(block, "\\").size() == sizeof(VS_FIXEDFILEINFO)));
    }
}
