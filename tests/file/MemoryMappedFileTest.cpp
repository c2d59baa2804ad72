#include "tests/support/TempFolder.h"
#include "tests/support/Text.h"

#include <kelcore/file.h>

#include <cstring>
#include <memory>

namespace {

static_assert(sizeof(void*) != 4 || sizeof(MemoryMappedFile) == 16, "file, mapping, view, size");

const char* View(const MemoryMappedFile& file) {
    return file;
}

bool IsEmpty(MemoryMappedFile& file) {
    return static_cast<char*>(file) == nullptr && View(file) == nullptr && file.getSize() == 0;
}

} // namespace

TEST_CASE("a file is mapped whole and closed to others meanwhile") {
    const TempFolder folder;
    const String path = folder.Write("ten", "0123456789");
    {
        MemoryMappedFile file(path, false);
        REQUIRE((View(file) != nullptr && static_cast<char*>(file) == View(file)));
        CHECK(std::string(View(file), file.getSize()) == "0123456789");
        MemoryMappedFile locked(path, false);
        CHECK((IsEmpty(locked) && GetLastError() == ERROR_SHARING_VIOLATION));
        struct {
            void *file, *mapping;
            const char* view;
            unsigned __int32 size;
        } members; // in their documented order
        std::memcpy(&members, &file, sizeof members);
        CHECK((members.view == View(file) && members.size == 10));
        SetLastError(4711);
    }
    CHECK(GetLastError() == 4711);
    {
        MemoryMappedFile file(path, true);
        REQUIRE(!IsEmpty(file));
        static_cast<char*>(file)[4] = 'X';
    }
    CHECK(folder.Read("ten") == "0123X56789");
}

TEST_CASE("what cannot be mapped gives the empty object and the system's reason") {
    const TempFolder folder;
    const std::pair<String, DWORD> cases[] = {{folder.Path("missing"), ERROR_FILE_NOT_FOUND},
                                              {folder.Write("empty", ""), ERROR_FILE_INVALID},
                                              {folder.Folder("folder"), ERROR_ACCESS_DENIED},
                                              {u""_w, ERROR_PATH_NOT_FOUND}};
    for (const auto& [path, error] : cases) {
        CAPTURE(path);
        for (const bool writable : {false, true}) {
            MemoryMappedFile file(path, writable);
            CHECK((IsEmpty(file) && GetLastError() == error));
        }
    }
    File huge(folder.Path("huge"), GENERIC_WRITE, 0, false, CREATE_NEW);
    huge.SetFilePos(0x100000004, FILE_BEGIN);
    huge.Write("x");
    huge.Close();
    MemoryMappedFile file(folder.Path("huge"), false);
    CHECK(IsEmpty(file));
}

TEST_CASE("copies share one mapping and the last one ends it") {
    const TempFolder folder;
    const String path = folder.Write("first", "111");
    const String other = folder.Write("second", "22");
    auto first = std::make_unique<MemoryMappedFile>(path, false);
    MemoryMappedFile copy(*first);
    CHECK(View(copy) == View(*first));
    MemoryMappedFile second(other, false);
    second = copy;
    second = *&second;
    first.reset();
    // Nothing holds the second file any more.
    CHECK_FALSE(IsEmpty(*std::make_unique<MemoryMappedFile>(other, true)));
    MemoryMappedFile nothing(folder.Path("missing"), false);
    copy = nothing;
    CHECK(IsEmpty(copy));
    CHECK(std::string(View(second), second.getSize()) == "111");
    CHECK_FALSE(DeleteFileA(StdW2A(path).c_str()));
    second = nothing;
    CHECK(DeleteFileA(StdW2A(path).c_str()));
}
