#include "Workplace.h"

#include "tests/support/Faults.h"

#include <atomic>
#include <cstring>
#include <thread>
#include <vector>

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

std::string FileName(const std::string& path) {
    return path.substr(path.find_last_of("\\/") + 1);
}

template <class Function>
Function Procedure(HMODULE module, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

} // namespace

TEST_CASE("what is no module is refused with the codes of Windows") {
    const Workplace place;
    const std::string image = Workplace::Read(kModules + "texts.dll");
    Workplace::Write("short.dll", "MZ");
    Workplace::Write("text.dll", std::string(5000, 'x'));
    Workplace::Write("cut.dll", image.substr(0, image.size() - 700));
    Workplace::Write("headers.dll", image.substr(0, 300));
    struct Row {
        const char* name;
        DWORD error;
    };
    const Row rows[] = {
        {"", ERROR_MOD_NOT_FOUND},
        {"none", ERROR_MOD_NOT_FOUND},
        {"none\\none.dll", ERROR_MOD_NOT_FOUND},
        {".\\none.dll", ERROR_MOD_NOT_FOUND},
        {"short.dll", ERROR_BAD_EXE_FORMAT},
        {"text", ERROR_BAD_EXE_FORMAT},
        {"cut.dll", ERROR_BAD_EXE_FORMAT},
        {"headers.dll", ERROR_BAD_EXE_FORMAT},
        {"text.", ERROR_MOD_NOT_FOUND},
        {"..", ERROR_ACCESS_DENIED},
    };
    for (const Row& row : rows) {
        CAPTURE(row.name);
        CHECK(ErrorOfLoading(row.name) == row.error);
    }
    CHECK(ErrorOf(FreeLibrary(nullptr)) == ERROR_INVALID_HANDLE);
    const auto foreign = reinterpret_cast<HMODULE>(ULONG_PTR{0x12340000});
    char path[8];
    CHECK(ErrorOf(FreeLibrary(foreign)) == ERROR_MOD_NOT_FOUND);
    CHECK(ErrorOf(GetModuleFileNameA(foreign, path, sizeof path) != 0) == ERROR_MOD_NOT_FOUND);
    CHECK(ErrorOf(GetProcAddress(foreign, "x") != nullptr) == ERROR_MOD_NOT_FOUND);
    CHECK(ErrorOf(LoadLibraryExA("none.dll", nullptr, LOAD_LIBRARY_AS_DATAFILE) != nullptr) == ERROR_FILE_NOT_FOUND);
}

TEST_CASE("a file is one module, whose uses are counted") {
    for (const char* file : {"texts.dll", "answer.dll"}) {
        CAPTURE(file);
        const std::string name = kModules + file;
        const std::string stem = name.substr(0, name.size() - 4);
        const HMODULE module = LoadLibraryA(name.c_str());
        REQUIRE(module != nullptr);
        CHECK(LoadLibraryA(stem.c_str()) == module);
        CHECK(LoadLibraryA(file) == module); // the name of a loaded module
        CHECK(GetModuleHandleA(file) == module);
        CHECK(GetModuleHandleA(FileName(stem).c_str()) == module);
        CHECK(GetModuleHandleA(file[0] == 't' ? "TEXTS.Dll" : "ANSWER.Dll") == module);
        CHECK(GetModuleHandleA(name.c_str()) == module);
        HMODULE counted = nullptr;
        CHECK(GetModuleHandleExA(0, file, &counted));
        CHECK(counted == module);
        for (int use = 0; use < 4; ++use)
            CHECK(FreeLibrary(module));
        CHECK(ErrorOf(FreeLibrary(module)) == ERROR_MOD_NOT_FOUND);
        CHECK(ErrorOf(GetModuleHandleA(file) != nullptr) == ERROR_MOD_NOT_FOUND);
    }
}

TEST_CASE("a plain name is found in the current folder, the program's being looked into first") {
    const Workplace place;
    Workplace::Write("kelcore_here.dll", Workplace::Read(kModules + "plain.dll"));
    const Loaded here("kelcore_here");
    REQUIRE(here != nullptr);
    CHECK(PathOf(here) == place.Path() + "\\kelcore_here.dll");
}

TEST_CASE("a module's path is cut at the buffer's end") {
    const Loaded module(kModules + "texts.dll");
    const std::string path = PathOf(module);
    CHECK(FileName(path) == "texts.dll");
    const auto length = static_cast<DWORD>(path.size());
    for (const DWORD size : {length + 1, length, length - 1, DWORD{1}, DWORD{0}}) {
        CAPTURE(size);
        std::string buffer(length + 2, '#');
        SetLastError(777);
        const DWORD result = GetModuleFileNameA(module, buffer.data(), size);
        CHECK(result == (size > length ? length : size));
        CHECK((GetLastError() == ERROR_INSUFFICIENT_BUFFER) == (size <= length));
        const std::string kept = size == 0 ? "" : path.substr(0, size - 1) + '\0';
        if (kOnLayer || size > length) // Wine leaves a cut text without its terminator
            CHECK(buffer == kept + std::string(buffer.size() - kept.size(), '#'));
    }
}

TEST_CASE("the program is a module") {
    const HMODULE program = GetModuleHandleA(nullptr);
    REQUIRE(program != nullptr);
    CHECK(PathOf(program) == PathOf(nullptr));
    CHECK(FileName(PathOf(program)).substr(0, 13) == "platform_test");
    HMODULE found = nullptr;
    static int data = 0;
    CHECK(GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                             reinterpret_cast<LPCSTR>(&data), &found));
    CHECK(found == program);
    CHECK(FreeLibrary(program)); // which does nothing
    CHECK(PathOf(program) == PathOf(nullptr));
    found = program;
    CHECK(ErrorOf(GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<LPCSTR>(16), &found)) ==
          ERROR_MOD_NOT_FOUND);
    CHECK(found == nullptr);
    CHECK(ErrorOf(GetModuleHandleExA(0x100, nullptr, &found)) == ERROR_INVALID_PARAMETER);
    CHECK(ErrorOf(GetModuleHandleExA(0, nullptr, nullptr)) == ERROR_INVALID_PARAMETER);
}

TEST_CASE("a native module runs, gives procedures out and knows itself") {
    const Loaded module(kModules + "answer.dll");
    REQUIRE(module != nullptr);
    const auto answer = Procedure<int (*)()>(module, "Answer");
    REQUIRE((answer != nullptr));
    CHECK(answer() == 42);
    CHECK(Procedure<HMODULE (*)()>(module, "OwnHandle")() == module);
    for (const char* name : {"answer", "", "none"})
        CHECK(ErrorOf(GetProcAddress(module, name) != nullptr) == ERROR_PROC_NOT_FOUND);
    const HRSRC resource = FindResourceA(module, "all", RT_RCDATA);
    REQUIRE(resource != nullptr);
    CHECK(std::memcmp(LockResource(LoadResource(module, resource)), "0000", 4) == 0);
    const Loaded data(kModules + "texts.dll");
    CHECK(ErrorOf(GetProcAddress(data, "Answer") != nullptr) == ERROR_PROC_NOT_FOUND);
}

TEST_CASE("the resources of a file outlive the file") {
    const Workplace place;
    Workplace::Write("a.dll", Workplace::Read(kModules + "plain.dll"));
    const HMODULE module = LoadLibraryExA(".\\a.dll", nullptr, LOAD_LIBRARY_AS_DATAFILE);
    REQUIRE(module != nullptr);
    if (kOnLayer) // elsewhere a loaded file cannot be written
        Workplace::Write("a.dll", "");
    const HRSRC resource = FindResourceA(module, MAKEINTRESOURCEA(1), RT_RCDATA);
    CHECK(SizeofResource(module, resource) == 5);
    CHECK(std::memcmp(LockResource(LoadResource(module, resource)), "alone", 5) == 0);
    CHECK(FreeLibrary(module));
    if (kOnLayer)
        CHECK(ErrorOfLoading(".\\a.dll") == ERROR_BAD_EXE_FORMAT);
}

TEST_CASE("many threads load, read and free the same modules") {
    std::vector<std::thread> threads;
    std::atomic<int> good{0};
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&good] {
            for (int round = 0; round < 50; ++round)
                for (const char* file : {"texts.dll", "answer.dll"}) {
                    const Loaded module(kModules + file);
                    good += FindResourceA(module, "all", RT_RCDATA) != nullptr && !PathOf(module).empty();
                }
        });
    for (std::thread& thread : threads)
        thread.join();
    CHECK(good == 400);
    CHECK(GetModuleHandleA("texts.dll") == nullptr);
    CHECK(GetModuleHandleA("answer.dll") == nullptr);
}

TEST_CASE("every call of modules and resources can fail, and nothing stays loaded") {
    kel::test::WithEachCallFailing(ERROR_NOT_ENOUGH_MEMORY, [] {
        const Loaded module(kModules + "texts.dll");
        const HRSRC resource = FindResourceA(module, "all", RT_RCDATA);
        const auto* bytes = static_cast<const char*>(LockResource(LoadResource(module, resource)));
        const bool failed = *kel::test::FaultedCall() != '\0';
        CHECK((bytes != nullptr || failed));
        if (bytes)
            CHECK(std::memcmp(bytes, "0000", 4) == 0);
    });
}
