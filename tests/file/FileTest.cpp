#include "tests/support/TempFolder.h"
#include "tests/support/Text.h"

#include <kelcore/file.h>

#include <cstring>
#include <stdexcept>

namespace {

constexpr __int64 k4GiB = 0x100000000;
constexpr unsigned int kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

static_assert(sizeof(void*) != 4 || sizeof(File) == 32, "table pointer, path, handle");
static_assert(sizeof(void*) != 4 || sizeof(File::Exception) == 28, "code, message");

struct TestedFile : File {
    using File::File;
    using File::GetHandle;
    using File::ThrowException;
};

// The error code that @p operation throws, 0 if it throws nothing.
template <class Operation>
unsigned long ErrorOf(Operation operation) {
    try {
        operation();
    } catch (const File::Exception& exception) {
        CHECK(exception.m_strMessage == String::CreateErrorMessage(exception.m_dwError));
        return exception.m_dwError;
    }
    return 0;
}

// Whether a handle is open, and has @p flag if one is asked for.
bool IsOpen(HANDLE handle, DWORD flag = 0) {
    DWORD flags = 0;
    return GetHandleInformation(handle, &flags) && (flags & flag) == flag;
}

} // namespace

TEST_CASE("a File opens by its full path, and closing empties it") {
    const TempFolder folder;
    const String path = folder.Write("data.bin", "abcd");
    TestedFile file;
    file.OpenForReading(folder.Path() + u"\\.\\data.bin"_w);
    CHECK((file.GetFilePath() == path && file.GetDirname() == folder.Path()));
    CHECK(file.GetBasename() + file.GetFileName() == u"data.bindata.bin"_w);
    CHECK(file.GetFileTitleA() + file.GetFileExtension() == u"data.bin"_w);
    CHECK(file.GetShortPath() == File::GetShortPath(path));
    CHECK(file.GetFileSize() == 4);
    // The members stand in their documented order behind the table of virtual functions.
    void* handle = nullptr;
    std::memcpy(&handle, reinterpret_cast<const char*>(&file) + sizeof(void*) + sizeof(WideString), sizeof handle);
    CHECK((file.IsValid() && handle == file.GetHandle()));

    SetLastError(4711);
    file.Close();
    CHECK(GetLastError() == 4711);
    CHECK((!file.IsValid() && file.GetFilePath().empty() && !IsOpen(handle)));
}

TEST_CASE("the opening members pass access, sharing, inheritance and disposition on") {
    const TempFolder folder;
    const String path = folder.Path("new");
    TestedFile file(path, GENERIC_WRITE, kShareAll, /*inheritable*/ true, CREATE_NEW), other;
    std::string bytes;
    CHECK(ErrorOf([&] { File again(path, GENERIC_WRITE, kShareAll, false, CREATE_NEW); }) == ERROR_FILE_EXISTS);
    CHECK(ErrorOf([&] { file.Read(bytes, 1); }) == ERROR_ACCESS_DENIED);
    CHECK(ErrorOf([&] { other.OpenForReading(path, FILE_SHARE_READ); }) == ERROR_SHARING_VIOLATION);
    other.OpenForReading(path, kShareAll);
    CHECK((IsOpen(file.GetHandle(), HANDLE_FLAG_INHERIT) && !IsOpen(other.GetHandle(), HANDLE_FLAG_INHERIT)));
    CHECK(ErrorOf([&] { other.Write("x"); }) == ERROR_ACCESS_DENIED);
    other.Close();
    other.OpenForReadWrite(path, kShareAll);
    CHECK(other.Write("345") == 3);
    other.Close();
    file.Close();
    other.Open(path, GENERIC_WRITE, 0, false, TRUNCATE_EXISTING, FILE_FLAG_DELETE_ON_CLOSE);
    CHECK(other.GetFileSize() == 0);
    other.Close();
    CHECK_FALSE(File::FileExists(path));
}

TEST_CASE("what fails throws the system's code and leaves the File as it was") {
    const TempFolder folder;
    const String path = folder.Write("there", "abc");
    File file;
    std::string bytes = "kept";
    CHECK_THROWS_AS(file.Read(bytes), std::length_error); // closed, it has no size
    CHECK(bytes == "kept");
    CHECK(ErrorOf([&] { file.Read(bytes, 2); }) == ERROR_INVALID_HANDLE);
    file.OpenForReading(path);
    CHECK(ErrorOf([&] { file.OpenForReading(folder.Path("no\\where")); }) == ERROR_PATH_NOT_FOUND);
    CHECK((file.GetFilePath() == path && file.IsValid()));
    SetLastError(ERROR_DISK_FULL);
    CHECK(ErrorOf([] { TestedFile().ThrowException(); }) == ERROR_DISK_FULL);
}

TEST_CASE("reading gives what is there; a count of 0 asks for the size of the file") {
    const TempFolder folder;
    const std::string content("a\0cd", 4);
    File file;
    file.OpenForReading(folder.Write("four", content));
    for (unsigned long from = 0; from <= 4; ++from)
        for (unsigned long count = 0; count <= 6; ++count) {
            INFO(from, " ", count);
            std::string bytes = "some longer text that was there before";
            file.SetFilePos(from, FILE_BEGIN);
            const std::string expected = content.substr(from, count == 0 ? 4 : count);
            CHECK((file.Read(bytes, count) == expected.size() && bytes == expected));
        }
}

TEST_CASE("writing moves the position, which takes 64-bit values") {
    const TempFolder folder;
    File file(folder.Path("out"), GENERIC_READ | GENERIC_WRITE, kShareAll, false, CREATE_ALWAYS);
    CHECK(file.Write(std::string("ab\0de", 5)) == 5);
    CHECK(file.SetFilePos(-3, FILE_CURRENT) == 2);
    CHECK(file.Write("X") == 1);
    file.Flush();
    CHECK(folder.Read("out") == std::string("abXde", 5));
    CHECK(file.SetFilePos(0, FILE_END) == 5);
    CHECK(file.SetFilePos(5 * k4GiB + 7, FILE_BEGIN) == 5 * k4GiB + 7);
    CHECK(file.SetFilePos(-4 * k4GiB, FILE_CURRENT) == k4GiB + 7);
    CHECK(ErrorOf([&] { file.SetFilePos(-1, FILE_BEGIN); }) == ERROR_NEGATIVE_SEEK);
    CHECK(file.GetFilePos() == k4GiB + 7);
    // The system moves there, but its answer looks like a failure.
    CHECK_THROWS_AS(file.SetFilePos(k4GiB - 1, FILE_BEGIN), File::Exception);
}

TEST_CASE("times are set and read one by one") {
    const TempFolder folder;
    File file(folder.Path("timed"), GENERIC_READ | GENERIC_WRITE, 0, false, CREATE_NEW);
    const FILETIME written = {0x5A000000, 0x01C00000}, accessed = {0x5A000000, 0x01C10000};
    file.SetFileTimes(nullptr, &accessed, &written);
    FILETIME read[2] = {};
    file.GetFileTimes(nullptr, &read[0], &read[1]);
    CHECK((CompareFileTime(&read[0], &accessed) == 0 && CompareFileTime(&read[1], &written) == 0));
}

TEST_CASE("copies share one open file and the last one closes it") {
    const TempFolder folder;
    TestedFile first;
    first.OpenForReading(folder.Write("shared", "abcdef"));
    const HANDLE handle = first.GetHandle();
    TestedFile second(first), third;
    third = second;
    third = *&third;
    CHECK((third.GetHandle() == handle && third.GetFilePath() == first.GetFilePath()));
    first.Close();
    third = TestedFile();
    CHECK((IsOpen(handle) && second.IsValid() && !third.IsValid()));
    second.Close();
    CHECK_FALSE(IsOpen(handle));
}

TEST_CASE("assignment and a second opening let go of the former handle without closing it") {
    const TempFolder folder;
    const String path = folder.Write("kept", "abc");
    for (const bool reopens : {false, true}) {
        CAPTURE(reopens);
        TestedFile file;
        file.OpenForReading(path);
        const HANDLE former = file.GetHandle();
        reopens ? file.OpenForReading(path) : void(file = TestedFile());
        CHECK(file.IsValid() == reopens);
        file.Close();
        CHECK((IsOpen(former) && CloseHandle(former)));
    }
}

TEST_CASE("regions are locked against other handles, at 64-bit offsets") {
    const TempFolder folder;
    const String path = folder.Write("locked", "0123456789");
    File file, other;
    file.OpenForReadWrite(path, kShareAll);
    other.OpenForReadWrite(path, kShareAll);
    const auto isFree = [&other](__int64 offset, __int64 size = 1) {
        const unsigned long error = ErrorOf([&] { other.LockRegion(offset, size); });
        CHECK((error == 0 || error == ERROR_LOCK_VIOLATION));
        CHECK((error != 0 || ErrorOf([&] { other.UnlockRegion(offset, size); }) == 0));
        return error == 0;
    };
    file.LockRegion(k4GiB, 16);
    CHECK((isFree(0, 16) && !isFree(k4GiB + 15) && isFree(k4GiB + 16)));
    CHECK(ErrorOf([&] { file.UnlockRegion(0, 16); }) != 0);
    file.UnlockRegion(k4GiB, 16);
    CHECK(isFree(k4GiB + 15));
    file.LockRegion(1, 3 * k4GiB);
    CHECK_FALSE(isFree(3 * k4GiB));
    file.UnlockRegion(1, 3 * k4GiB);

    file.Lock();
    CHECK_FALSE(isFree(9));
    other.SetFilePos(10, FILE_BEGIN);
    CHECK(other.Write("x") == 1);
    // The file has grown since, so the region to unlock is no longer the one that was locked.
    CHECK(ErrorOf([&] { file.Unlock(); }) != 0);
    file.UnlockRegion(0, 10);
    CHECK(isFree(9));
}
