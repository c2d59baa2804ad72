#include "tests/stream/Probes.h"

TEST_CASE("bytes are complemented in one call, and the caller's stay as they are") {
    for (const int size : {1, 16, 31, 4095, 4096, 4097, 100000}) {
        CAPTURE(size);
        const std::string bytes = RandomBytes(static_cast<std::size_t>(size));
        std::string complement = bytes;
        for (char& byte : complement)
            byte = static_cast<char>(~byte);
        const std::string given(bytes.data(), bytes.size());
        RecordingSink sink;
        CryptingOutputStream(sink).Write(given.data(), size);
        CHECK(given == bytes);
        CHECK(sink.calls == std::vector<std::string>{complement});
        RecordingSource source(complement);
        std::string back(bytes.size(), '\0');
        CryptingInputStream(source).Read(back.data(), size);
        CHECK(back == bytes);
        CHECK(source.sizes == std::vector<int>{size});
    }
}

TEST_CASE("scrambling passes on neither empty calls nor a flush, copies its target and fails with its inner stream") {
    RecordingSink sink, other;
    CryptingOutputStream out(sink), copy(other);
    out.Write("abc", 0);
    out.Write("abc", -1);
    out.Flush();
    CHECK(sink.calls.empty());
    copy = out;
    copy.Write("\x0F", 1);
    CHECK((Hex(sink.Content()) == "F0" && other.calls.empty()));
    sink.failAt = 2;
    CHECK(Failure([&] { out << "text in memory that cannot be written to"; }) == "99: ");

    RecordingSource source("ab");
    CryptingInputStream in(source);
    char bytes[4] = "xyz";
    in.Read(bytes, 0);
    in.Read(bytes, -1);
    CHECK(source.sizes.empty());
    CHECK(Failure([&] { in.Read(bytes, 3); }) == kTooShort);
    CHECK(std::string(bytes) == "xyz");
}
