#include "tests/toolkit/Toolkit.h"

#include "tests/support/TempFolder.h"

using namespace kel::test;

namespace {

std::string Text(const Bytes& bytes) {
    return {bytes.begin(), bytes.end()};
}

SHORT LoadFile(const Control& control, const String& path) {
    const BSTR text = SysAllocStringLen(reinterpret_cast<const OLECHAR*>(path.c_str()), static_cast<UINT>(path.size()));
    CHECK(control(toolkit::SetFileName, text) == S_OK);
    SysFreeString(text);
    return control.Get(toolkit::GetLoadStatus);
}

} // namespace

TEST_CASE("files are loaded by path, whatever the path is spelled with") {
    const TempFolder folder;
    const Control control;
    const Bytes dib = DibOf({70, 50, 24});
    REQUIRE(control(toolkit::SetDibHandle, BlockOf(dib)) == S_OK);
    const Bytes saved = control.Saved();
    REQUIRE(saved.size() > 4096); // more than what tells the kind
    for (const char* name : {"plain.pic", "with blanks and no extension", "caf\xC3\xA9.bmp"}) {
        if (GetACP() != 65001 && std::strchr(name, '\xC3'))
            continue; // the name is one of the layer's code page
        CAPTURE(std::string(name));
        const String path = folder.Write(name, Text(saved));
        control(toolkit::SetDibHandle, nullptr);
        CHECK(LoadFile(control, path) == toolkit::kLoaded);
        CHECK(control.Picture() == dib);
    }
}

TEST_CASE("what cannot be loaded leaves no picture and says why") {
    const TempFolder folder;
    const Control control;
    REQUIRE(control(toolkit::CreateBlank, 60, 60, 24, 0) == S_OK);
    const Bytes saved = control.Saved();
    const struct {
        const char* name;
        std::string bytes;
        SHORT status;
    } rows[] = {
        {"empty", "", toolkit::kUnknown},
        {"text", "no picture at all", toolkit::kUnknown},
        {"signature", Text(saved).substr(0, 8), toolkit::kDamaged},
        {"cut", Text(saved).substr(0, saved.size() - 1), toolkit::kDamaged},
    };
    for (const auto& row : rows) {
        CAPTURE(std::string(row.name));
        REQUIRE(control(toolkit::CreateBlank, 2, 2, 24, 0) == S_OK);
        CHECK(LoadFile(control, folder.Write(row.name, row.bytes)) == row.status);
        CHECK(control.Get(toolkit::GetDibHandle) == nullptr);
        CHECK(control.Load({row.bytes.begin(), row.bytes.end()}) == row.status);
    }
    CHECK(LoadFile(control, folder.Path("missing")) == toolkit::kUnknown);
    CHECK(LoadFile(control, folder.Path()) == toolkit::kUnknown);
    CHECK(LoadFile(control, String()) == toolkit::kUnknown);
    CHECK(control(toolkit::SetFileName, nullptr) == S_OK);
    CHECK(control.Get(toolkit::GetLoadStatus) == toolkit::kUnknown);
    CHECK(control.Load(saved) == toolkit::kLoaded);
    CHECK(control(toolkit::LoadFromMemory, nullptr, 5) == E_INVALIDARG);
    CHECK(control.Get(toolkit::GetDibHandle) != nullptr);
}
