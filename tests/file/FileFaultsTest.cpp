#include "tests/support/Faults.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Text.h"

#include <kelcore/file.h>

#include <functional>
#include <string_view>

namespace {

constexpr DWORD kError = ERROR_DISK_FULL;

// Whether one of these calls has met the fault.
template <class... Calls>
bool Faulted(const Calls&... calls) {
    return ((kel::test::FaultedCall() == std::string_view(calls)) || ...);
}

// Whether @p operation went well; if not, it has thrown the code of the fault.
bool Succeeds(const std::function<void()>& operation) {
    try {
        operation();
        return true;
    } catch (const File::Exception& exception) {
        CHECK(exception.m_dwError == kError);
        CHECK(exception.m_strMessage == String::CreateErrorMessage(kError));
        return false;
    }
}

} // namespace

TEST_CASE("a File reports each failing call and keeps its handle and path") {
    const TempFolder folder;
    const String path = folder.Write("file", "0123456789");
    kel::test::WithEachCallFailing(kError, [&] {
        File file;
        const bool opened = Succeeds([&] { file.OpenForReadWrite(path, FILE_SHARE_READ); });
        CHECK(opened == !Faulted("CreateFileA"));
        CHECK(file.IsValid() == opened);
        CHECK(file.GetFilePath() == (opened ? path : u""_w));
        if (!opened)
            return;
        std::string bytes;
        FILETIME written = {};
        const std::pair<std::string, std::function<void()>> operations[] = {
            {"ReadFile", [&] { file.Read(bytes, 4); }},
            {"SetFilePointer", [&] { file.SetFilePos(0, FILE_BEGIN); }},
            {"WriteFile", [&] { file.Write("0123"); }},
            {"FlushFileBuffers", [&] { file.Flush(); }},
            {"GetFileTime", [&] { file.GetFileTimes(nullptr, nullptr, &written); }},
            {"SetFileTime", [&] { file.SetFileTimes(nullptr, nullptr, &written); }},
            {"LockFile", [&] { file.LockRegion(0, 4); }},
            {"UnlockFile", [&] { Faulted("LockFile") ? void() : file.UnlockRegion(0, 4); }},
        };
        for (const auto& [call, operation] : operations) {
            CAPTURE(call);
            const bool succeeded = Succeeds(operation);
            CHECK(succeeded == !Faulted(call));
            CHECK((file.IsValid() && file.GetFilePath() == path && bytes.size() == 4));
        }
        unsigned long got = 0;
        const bool whole = Succeeds([&] {
            file.SetFilePos(0, FILE_BEGIN);
            got = file.Read(bytes);
        });
        // The size to read comes from the directory entry, which a failing search takes for missing.
        CHECK(got == (whole && !Faulted("FindFirstFileA") ? 10u : 0u));
        SetLastError(4711);
        file.Close();
        CHECK(GetLastError() == 4711);
        CHECK_FALSE(file.IsValid());
    });
}

TEST_CASE("short transfers are told by their counts") {
    const TempFolder folder;
    const String path = folder.Write("file", "0123456789");
    const auto body = [&] {
        File file;
        file.OpenForReadWrite(path);
        std::string bytes;
        const unsigned long got = file.Read(bytes, 10);
        CHECK(got == (Faulted("ReadFile") ? 5u : 10u));
        CHECK(bytes == std::string("0123456789").substr(0, got));
        file.SetFilePos(0, FILE_BEGIN);
        const unsigned long put = file.Write("0123456789");
        CHECK(put == (Faulted("WriteFile") ? 5u : 10u));
        CHECK(file.GetFilePos() == static_cast<__int64>(put));
    };
    kel::test::WithEachCallFailing(kError, body, kel::test::Fault::ShortTransfer);
}

TEST_CASE("searches and sizes end early when a call fails") {
    const TempFolder folder;
    folder.Write("a", "1");
    folder.Folder("sub");
    folder.Write("sub\\c", "333");
    kel::test::WithEachCallFailing(kError, [&] {
        FileFinder finder;
        int entries = 0;
        for (bool found = finder.Start(folder.Path("*.*"), false); found; found = finder.Next())
            ++entries;
        // The call that finds no more entries may be the one that fails.
        CHECK((entries == 2 || Faulted("FindFirstFileA", "FindNextFileA")));
        CHECK((entries == 0 || !Faulted("FindFirstFileA")));
        CHECK(finder.GetFileName().empty() == Faulted("FindFirstFileA"));
        CHECK_FALSE((Faulted("FindFirstFileA") && finder.Next()));
    });
    kel::test::WithEachCallFailing(kError, [&] {
        const __int64 size = File::GetSizeRecursive(folder.Path());
        CHECK((size == 4 || Faulted("FindFirstFileA", "FindNextFileA")));
        CHECK((size < 4 || !Faulted("FindFirstFileA")));
        const bool exists = File::FileExists(folder.Path("a"));
        CHECK(exists == !Faulted("GetFileAttributesA"));
    });
}

TEST_CASE("a mapping whose making fails anywhere is empty, with nothing left open") {
    const TempFolder folder;
    const String path = folder.Write("file", "0123456789");
    kel::test::WithEachCallFailing(kError, [&] {
        MemoryMappedFile file(path, true);
        const bool failed = Faulted("CreateFileA", "GetFileSize", "CreateFileMappingA", "MapViewOfFile");
        CHECK((static_cast<char*>(file) == nullptr) == failed);
        CHECK(file.getSize() == (failed ? 0u : 10u));
        CHECK((!failed || GetLastError() == kError));
    });
}

TEST_CASE("path functions answer a refusal of the system with their stated results") {
    const TempFolder folder;
    const String path = folder.Write("file", "");
    kel::test::WithEachCallFailing(kError, [&] {
        const String dotted = folder.Path(".\\file");
        const WideString full = File::GetFullPath(dotted), shortened = File::GetShortPath(path);
        const WideString compacted = File::CompactPath(path, MAX_PATH);
        CHECK(full == (Faulted("GetFullPathNameA") ? dotted : path));
        CHECK(shortened.empty() == Faulted("GetShortPathNameA"));
        CHECK(compacted.empty() == Faulted("PathCompactPathExA"));
    });
}
