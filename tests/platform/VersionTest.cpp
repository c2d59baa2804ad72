#include "Workplace.h"

#include <cstring>
#include <vector>

namespace {

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
std::string Query(const std::vector<char>& block, const char* path) {
    void* value = nullptr;
    UINT length = 777;
    if (!VerQueryValueA(block.data(), path, &value, &length))
        return "<" + std::to_string(GetLastError()) + ">";
    const char* bytes = static_cast<const char*>(value);
    CHECK(bytes >= block.data());
    CHECK(bytes + length <= block.data() + block.size());
    return {bytes, length};
}

std::string Text(const std::string& text) {
    return text + '\0';
}

} // namespace

TEST_CASE("a file's version record gives numbers, translations and texts") {
    const bool utf8 = GetACP() == 65001;
    for (const char* file : {"texts.dll", "answer.dll"}) {
        CAPTURE(file);
        const std::vector<char> block = VersionOf(kModules + file);
        REQUIRE(!block.empty());
        const std::string root = Query(block, "\\");
        REQUIRE(root.size() == sizeof(VS_FIXEDFILEINFO));
        VS_FIXEDFILEINFO fixed;
        std::memcpy(&fixed, root.data(), sizeof fixed);
        CHECK(fixed.dwSignature == VS_FFI_SIGNATURE);
        CHECK(fixed.dwFileVersionMS == 0x00010002);
        CHECK(fixed.dwProductVersionMS == 0x00050006);
        CHECK(fixed.dwProductVersionLS == 0x0007FFFF);
        CHECK(Query(block, "") == root);
        CHECK(Query(block, "\\VarFileInfo\\Translation") == std::string("\x09\x04\xB0\x04\x07\x04\xB0\x04", 8));
        CHECK(Query(block, "varfileinfo\\translation\\").size() == 8);
        const std::string english = "\\StringFileInfo\\040904b0\\";
        if (utf8)
            CHECK(Query(block, (english + "ProductName").c_str()) == Text("Gr\xC3\xBCn \xE6\x97\xA5\xE6\x9C\xAC"));
        CHECK(Query(block, (english + "COMMENTS").c_str()) ==
              Text("a longer text, so that the next one begins at another offset"));
        CHECK(Query(block, (english + "Empty").c_str()) == Text(""));
        CHECK(Query(block, "\\stringfileinfo\\040704B0\\productname") == Text("Gelb"));
        for (const char* none : {"\\none", "/", "\\StringFileInfo\\040904b0\\None", "\\StringFileInfo\\04\\ProductName",
                                 "\\StringFileInfo\\040904b0\\ProductName\\x", "\\VarFileInfo\\Translatio"})
            CHECK(Query(block, none) == "<1813>");
        CHECK(Query(block, "\\StringFileInfo").empty());
    }
}

TEST_CASE("a file without a version is refused with the codes of Windows") {
    const Workplace place;
    Workplace::Write("text.txt", "text");
    Workplace::Write("empty.dll");
    struct Row {
        std::string name;
        DWORD error;
        bool alike = true; // on Wine
    };
    const Row rows[] = {
        {"none.dll", ERROR_FILE_NOT_FOUND},
        {"none\\none.dll", ERROR_PATH_NOT_FOUND},
        {"", ERROR_BAD_PATHNAME},
        {".", ERROR_ACCESS_DENIED},
        {"text.txt", ERROR_RESOURCE_DATA_NOT_FOUND},
        {"empty.dll", ERROR_RESOURCE_DATA_NOT_FOUND},
        {kModules + "plain.dll", ERROR_RESOURCE_TYPE_NOT_FOUND, false},
    };
    for (const Row& row : rows) {
        CAPTURE(row.name);
        if (row.alike || kOnLayer)
            CHECK(ErrorOf(GetFileVersionInfoSizeA(row.name.c_str(), nullptr) != 0) == row.error);
    }
    CHECK(ErrorOf(GetFileVersionInfoSizeA(nullptr, nullptr) != 0) == ERROR_INVALID_PARAMETER);
}

TEST_CASE("a block that is too small holds what fits") {
    const std::string file = kModules + "texts.dll";
    const std::vector<char> whole = VersionOf(file);
    std::uint16_t record;
    std::memcpy(&record, whole.data(), sizeof record);
    for (const std::size_t size :
         {std::size_t{0}, std::size_t{1}, std::size_t{92}, std::size_t{200}, std::size_t{record}, whole.size() - 1}) {
        CAPTURE(size);
        std::vector<char> block(size + 1, '#');
        CHECK(GetFileVersionInfoA(file.c_str(), 0, static_cast<DWORD>(size), block.data()));
        CHECK(block[size] == '#');
        block.pop_back();
        if (size >= 92)
            CHECK(Query(block, "\\").size() == sizeof(VS_FIXEDFILEINFO));
        if (size >= record && kOnLayer)
            CHECK(Query(block, "\\StringFileInfo\\040904b0\\ProductName") == "<13>");
    }
}
