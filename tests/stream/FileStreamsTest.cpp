#include "tests/stream/Probes.h"
#include "tests/support/Faults.h"
#include "tests/support/TempFolder.h"

namespace {

std::string SystemText(DWORD error) {
    char* text = nullptr;
    FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM, nullptr, error, 0,
                   reinterpret_cast<LPSTR>(&text), 0, nullptr);
    const std::string result = text == nullptr ? "" : text;
    LocalFree(text);
    return "1: " + result;
}

} // namespace

TEST_CASE("a file sink empties an existing file and stores what is written, which a source reads until it ends") {
    const TempFolder folder;
    const WideString path = folder.Write("file", "longer than what comes");
    {
        FileOutputStream sink(path);
        sink << 258;
        kel::test::ArmFault(1, ERROR_DISK_FULL);
        for (const int size : {0, -1})
            sink.Write("abc", size);
        CHECK_FALSE(kel::test::DisarmFault()); // no call of the system
        sink.Write("abc", 3);
        sink.Flush();
        CHECK(Failure([&] { FileOutputStream second(path); }) == SystemText(ERROR_SHARING_VIOLATION));
        CHECK(Failure([&] { FileInputStream second(path); }) == SystemText(ERROR_SHARING_VIOLATION));
    }
    CHECK(Failure([&] { FileInputStream none(folder.Path("missing")); }) == SystemText(ERROR_FILE_NOT_FOUND));
    CHECK(Failure([&] { FileOutputStream none(folder.Path("missing\\file")); }) == SystemText(ERROR_PATH_NOT_FOUND));
    CHECK(Hex(folder.Read("file")) == "02 01 00 00 61 62 63");
    FileInputStream source(path);
    int number = 0;
    source >> number;
    CHECK(number == 258);
    char bytes[] = "xxxxx";
    source.Read(bytes, 0);
    source.Read(bytes, -1);
    for (const int size : {4, 1})
        CHECK(Failure([&] { source.Read(bytes, size); }) == "4: Read beyond end of file");
    CHECK(std::string(bytes) == "abcxx");
}

TEST_CASE("copies share one file, which the last of them closes without touching the last error") {
    const TempFolder folder;
    const WideString path = folder.Path("file");
    {
        FileOutputStream other(folder.Path("other"));
        {
            FileOutputStream sink(path);
            const FileOutputStream copy(sink);
            sink << 'a';
            other = copy;
            other = *&other;
        }
        CHECK(Failure([&] { FileOutputStream second(path); }) == SystemText(ERROR_SHARING_VIOLATION));
        other << 'b';
        SetLastError(77);
    }
    CHECK(GetLastError() == 77);
    CHECK(folder.Read("file") == "ab");
    CHECK(folder.Read("other").empty());
    FileInputStream source(path), copy(source);
    char first = 0, second = 0;
    source >> first;
    copy >> second;
    CHECK((first == 'a' && second == 'b'));
}

TEST_CASE("each failing call of a file stream throws the system's text and leaves no handle") {
    const TempFolder folder;
    const WideString path = folder.Path("file");
    const std::string full = SystemText(ERROR_DISK_FULL);
    const auto round = [&] {
        {
            FileOutputStream sink(path);
            CRCOutputStream blocks(sink);
            const std::string failure = Failure([&] {
                blocks << "abc";
                blocks.Flush();
            });
            // The stream stays usable, and a block that failed is still pending.
            const std::string again = Failure([&] { blocks.Flush(); });
            CHECK((failure.empty() || failure == full));
            CHECK((again.empty() || (failure.empty() && again == full)));
        }
        FileInputStream source(path);
        int length = 0;
        const std::string failure = Failure([&] { source >> length; });
        CHECK(failure == (kel::test::FaultedCall() == std::string("ReadFile") ? full : ""));
    };
    kel::test::WithEachCallFailing(ERROR_DISK_FULL, [&] {
        const std::string failure = Failure(round);
        const std::string call = kel::test::FaultedCall();
        // A path that could not be converted is empty.
        const std::string expected = call == "CreateFileA"           ? full
                                     : call == "WideCharToMultiByte" ? SystemText(ERROR_PATH_NOT_FOUND)
                                                                     : "";
        CHECK_MESSAGE(failure == expected, call);
    });
}

TEST_CASE("a short write goes unnoticed, a short read does not") {
    const TempFolder folder;
    const WideString path = folder.Path("file");
    const WideString six = folder.Write("six", "abcdef");
    const auto round = [&] {
        { FileOutputStream(path).Write("abcdef", 6); }
        FileInputStream source(six);
        char bytes[] = "xxxxxx";
        const std::string failure = Failure([&] { source.Read(bytes, 6); });
        const bool shortRead = kel::test::FaultedCall() == std::string("ReadFile");
        CHECK(failure == (shortRead ? "4: Read beyond end of file" : ""));
        CHECK(std::string(bytes) == (shortRead ? "abcxxx" : "abcdef"));
    };
    kel::test::WithEachCallFailing(0, round, kel::test::Fault::ShortTransfer);
}
