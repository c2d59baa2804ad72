#include "tests/runtime/SampleModule.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <vector>

namespace {

// The commands of a table in the order of its rows.
std::vector<int> Commands(HACCEL table) {
    ACCEL rows[8];
    std::vector<int> commands(static_cast<std::size_t>(CopyAcceleratorTableA(table, rows, 8)));
    std::transform(rows, rows + commands.size(), commands.begin(), [](const ACCEL& row) { return row.cmd; });
    return commands;
}

} // namespace

TEST_CASE("a string is found by its number, cut into lines, and never read past its block") {
    const SampleModule module;
    const auto gives = [&](unsigned id, const char* text, int first = 0, int last = -1) {
        CHECK_MESSAGE(module.Text(id, first, last) == text, id, " ", first, " ", last);
    };
    gives(15, "fifteen");
    gives(16, "sixteen");
    gives(18, "");
    gives(17 + (1 << 20), "seventeen");
    gives(20, "a\nbb\r\nccc");
    gives(20, "bb\r", 1, 1);
    gives(20, "bb\r\nccc", -1, 2);
    gives(20, "", 3, 5);
    gives(160, "a");
    for (const unsigned none : {64, 144, 145, 161, 176})
        gives(none, "(none)");
}

TEST_CASE("a String takes its text and its formats from a module") {
    SampleModule module;
    String text(u"before"_w);
    text.Format(&module, 30, static_cast<const unsigned short*>(u"count"_w), 7);
    CHECK(text == u"count: 7"_w);
    text.FormatMessageA(&module, 31, "left", 2);
    CHECK(text == u"left and 2"_w);
    text.FormatMessageA(&module, 64);
    CHECK(text == u"left and 2"_w);
    text.Format(&module, 64);
    CHECK(text.empty());
    CHECK(text.LoadStringA(20, 0, 0, &module));
    CHECK(text == u"a"_w);
}

TEST_CASE("a module knows its file, its version and its procedures, and is listed from Init to Free") {
    const std::string listed = StdW2A(ModuleBase::GetProcessInformation());
    SampleModule first, second;
    const String path = first.GetPath();
    CHECK(path == Beside(path, "module.dll"));
    CHECK(first.GetDirectory() == File::GetDirname(path));
    CHECK(first.GetFilename() == u"module.dll"_w);
    CHECK(first.GetName() == u"module"_w);
    CHECK(first.CreateResourceURL(5, RT_HTML) == u"res://"_w + path + u"/23/5"_w);

    const std::string line = StdW2A(path) + "    1.2.0.1\r\n";
    CHECK(StdW2A(ModuleBase::GetProcessInformation()) == listed.substr(0, listed.size() - 2) + line + line + "\r\n");
    String capitals = path;
    capitals.ToUpper();
    CHECK((ModuleBase::GetModule(path) == &first && ModuleBase::GetModule(capitals) == nullptr));
    first.Init(first.m_hInstance);
    first.Free();
    CHECK(ModuleBase::GetModule(path) == &second);

    const auto versions = [](const char* file, unsigned long high) {
        unsigned long ms = 1, ls = 1;
        ModuleBase::GetModuleVersion(StdA2W(SampleFile(file)), ms, ls);
        CHECK((ms == high && ls == 0));
    };
    versions("outdated.dll", 0x10002);
    versions("missing.dll", 0);

    HMODULE holder = nullptr;
    REQUIRE(GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                               reinterpret_cast<const char*>(&GetCurrentThreadId), &holder));
    const TestModule platform(holder);
    const auto procedure = reinterpret_cast<DWORD(WINAPI*)()>(platform.GetProcedure("GetCurrentThreadId"));
    REQUIRE((procedure != nullptr));
    CHECK(procedure() == GetCurrentThreadId());
    CHECK((platform.GetProcedure("NobodyExportsThis") == nullptr));
}

TEST_CASE("pictures, bitmaps and misses come from the module itself, all else from its language file") {
    Provider provider;
    ModuleBase::SetLanguage(0x0407, &provider);
    SampleModule module;
    CHECK(module.Bytes(7, RT_BITMAP) == "own bitmap");
    CHECK(module.Bytes(7, "PICTURE") == "own picture");
    CHECK(module.Bytes(7, "picture") == "german picture");
    CHECK(module.Bytes(7 + (1 << 16), RT_HTML) == "german page");
    CHECK(module.Bytes(8, RT_HTML) == "(none)");
    CHECK(module.LoadResource(7, RT_HTML, nullptr) != nullptr);
}

TEST_CASE("the accelerator table is one for all modules") {
    Provider provider;
    SampleModule module, other;
    CHECK((module.LoadAcceleratorsA(3 + (1 << 16)) && Commands(other.GetAccelerators()) == std::vector{101}));
    ModuleBase::SetLanguage(0x0407, &provider);
    CHECK(module.LoadAcceleratorsA(3));
    const HACCEL kept = other.GetAccelerators();
    CHECK(Commands(kept) == std::vector{103, 105});
    module.SetAccelerators(module.LoadAcceleratorsFromResource(3));
    CHECK(DestroyAcceleratorTable(kept));
    CHECK((!other.LoadAcceleratorsA(4) && other.GetAccelerators() == nullptr));
}
