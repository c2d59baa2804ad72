#include "Workplace.h"

#include "tests/support/Threads.h"

#include <atomic>

namespace {

const std::string kModules = KELCORE_TEST_MODULES "/";

/// A module that is loaded for a scope.
class Loaded {
public:
    explicit Loaded(const std::string& name) : m_handle(LoadLibraryA(name.c_str())) {}
    Loaded(const Loaded&) = delete;
    Loaded& operator=(const Loaded&) = delete;
    ~Loaded() {
        if (m_handle)
            FreeLibrary(m_handle);
    }
    operator HMODULE() const { return m_handle; }

private:
    HMODULE m_handle;
};

DWORD ErrorOfLoading(const std::string& name) {
    const Loaded module(name);
    return module ? 0 : GetLastError();
}

std::string PathOf(HMODULE module) {
    char path[MAX_PATH];
    return {path, GetModuleFileNameA(module, path, sizeof path)};
}

// The bytes of a resource, none if it is not found.
std::string Bytes(HMODULE module, LPCSTR name) {
    const HRSRC resource = FindResourceA(module, name, RT_RCDATA);
    const void* const bytes = LockResource(LoadResource(module, resource));
    return bytes ? std::string(static_cast<const char*>(bytes), SizeofResource(module, resource)) : "";
}

} // namespace

TEST_CASE("what is no module is refused with the codes of Windows") {
    const Workplace place;
    const std::string image = Workplace::Read(kModules + "texts.dll");
    Workplace::Write("short.dll", "MZ");
    Workplace::Write("text.dll", std::string(5000, 'x'));
    Workplace::Write("cut.dll", image.substr(0, image.size() - 700));
    Workplace::Write("headers.dll", image.substr(0, 300));
    for (const char* name : {"", "none", "none\\none.dll", ".\\none.dll", "text."})
        CHECK(ErrorOfLoading(name) == ERROR_MOD_NOT_FOUND);
    for (const char* name : {"short.dll", "text", "cut.dll", "headers.dll"})
        CHECK(ErrorOfLoading(name) == ERROR_BAD_EXE_FORMAT);
    CHECK(ErrorOfLoading("..") == ERROR_ACCESS_DENIED);
    CHECK(ErrorOf(LoadLibraryExA("none.dll", nullptr, LOAD_LIBRARY_AS_DATAFILE) != nullptr) == ERROR_FILE_NOT_FOUND);
    CHECK(ErrorOf(FreeLibrary(nullptr)) == ERROR_INVALID_HANDLE);
    const auto foreign = reinterpret_cast<HMODULE>(ULONG_PTR{0x12340000});
    char path[8];
    CHECK(ErrorOf(FreeLibrary(foreign)) == ERROR_MOD_NOT_FOUND);
    CHECK(ErrorOf(GetModuleFileNameA(foreign, path, sizeof path) != 0) == ERROR_MOD_NOT_FOUND);
    CHECK(ErrorOf(GetProcAddress(foreign, "x") != nullptr) == ERROR_MOD_NOT_FOUND);
}

TEST_CASE("a file is one module, whose uses are counted") {
    for (const std::string stem : {"texts", "answer"}) {
        CAPTURE(stem);
        const std::string file = stem + ".dll", path = kModules + file;
        const HMODULE module = LoadLibraryA(path.c_str());
        REQUIRE(module != nullptr);
        for (const std::string& name : {kModules + stem, file}) // the latter as the name of a loaded module
            CHECK(LoadLibraryA(name.c_str()) == module);
        for (const std::string& name : {file, stem, path, stem + ".DLL"})
            CHECK(GetModuleHandleA(name.c_str()) == module);
        HMODULE counted = nullptr;
        CHECK(GetModuleHandleExA(0, file.c_str(), &counted));
        CHECK(counted == module);
        for (int use = 0; use < 4; ++use)
            CHECK(FreeLibrary(module));
        CHECK(ErrorOf(FreeLibrary(module)) == ERROR_MOD_NOT_FOUND);
        CHECK(ErrorOf(GetModuleHandleA(file.c_str()) != nullptr) == ERROR_MOD_NOT_FOUND);
    }
}

TEST_CASE("a module's path is cut at the buffer's end") {
    const Loaded module(kModules + "texts.dll");
    const std::string path = PathOf(module);
    const auto length = static_cast<DWORD>(path.size());
    for (const DWORD size : {length + 1, length, DWORD{1}, DWORD{0}}) {
        CAPTURE(size);
        std::string buffer(length + 2, '#');
        SetLastError(777);
        CHECK(GetModuleFileNameA(module, buffer.data(), size) == (size > length ? length : size));
        CHECK((GetLastError() == ERROR_INSUFFICIENT_BUFFER) == (size <= length));
        const std::string kept = size == 0 ? "" : path.substr(0, size - 1) + '\0';
        if (kOnLayer || size > length) // Wine leaves a cut text without its terminator
            CHECK(buffer == kept + std::string(buffer.size() - kept.size(), '#'));
    }
}

TEST_CASE("the program is a module, and every address leads to its own") {
    const HMODULE program = GetModuleHandleA(nullptr);
    CHECK(PathOf(program) == PathOf(nullptr));
    CHECK(PathOf(program).find("platform_test") != std::string::npos);
    CHECK((FreeLibrary(program) && PathOf(program) == PathOf(nullptr))); // which does nothing
    static int data = 0;
    const DWORD flags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    HMODULE found = nullptr;
    CHECK(GetModuleHandleExA(flags, reinterpret_cast<LPCSTR>(&data), &found));
    CHECK(found == program);
    CHECK(ErrorOf(GetModuleHandleExA(flags, reinterpret_cast<LPCSTR>(16), &found)) == ERROR_MOD_NOT_FOUND);
    CHECK(found == nullptr);
    CHECK(ErrorOf(GetModuleHandleExA(0x100, nullptr, &found)) == ERROR_INVALID_PARAMETER);
}

TEST_CASE("a native module runs, gives procedures out and knows itself") {
    const Loaded module(kModules + "answer.dll"), data(kModules + "texts.dll");
    const auto own = reinterpret_cast<HMODULE (*)()>(reinterpret_cast<void*>(GetProcAddress(module, "OwnHandle")));
    REQUIRE((own != nullptr));
    CHECK(own() == module);
    CHECK(ErrorOf(GetProcAddress(module, "ownhandle") != nullptr) == ERROR_PROC_NOT_FOUND);
    CHECK(ErrorOf(GetProcAddress(data, "OwnHandle") != nullptr) == ERROR_PROC_NOT_FOUND);
    CHECK(Bytes(module, "all") == "0000");
}

TEST_CASE("a plain name is found in the current folder, and the resources of a file outlive the file") {
    const Workplace place;
    Workplace::Write("kelcore_here.dll", Workplace::Read(kModules + "plain.dll"));
    CHECK(PathOf(Loaded("kelcore_here")) == place.Path() + "\\kelcore_here.dll");
    Workplace::Write("a.dll", Workplace::Read(kModules + "plain.dll"));
    const HMODULE module = LoadLibraryExA(".\\a.dll", nullptr, LOAD_LIBRARY_AS_DATAFILE);
    if (kOnLayer) // elsewhere a loaded file cannot be written
        Workplace::Write("a.dll", "");
    CHECK(Bytes(module, MAKEINTRESOURCEA(1)) == "alone");
    CHECK(FreeLibrary(module));
    CHECK((!kOnLayer || ErrorOfLoading(".\\a.dll") == ERROR_BAD_EXE_FORMAT));
}

TEST_CASE("many threads load, read and free the same modules") {
    std::atomic<int> good{0};
    kel::test::OnThreads(4, [&good](int) {
        for (int round = 0; round < 100; ++round) {
            const Loaded module(kModules + (round % 2 ? "texts.dll" : "answer.dll"));
            good += Bytes(module, "all") == "0000" && !PathOf(module).empty();
        }
    });
    CHECK(good == 400);
    CHECK((!GetModuleHandleA("texts.dll") && !GetModuleHandleA("answer.dll")));
}
