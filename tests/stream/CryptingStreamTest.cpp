#include "tests/stream/Probes.h"

TEST_CASE("bytes are complemented in one write, and the caller's stay as they are") {
    for (const std::size_t size : {1, 3, 16, 31, 4095, 4096, 4097, 100000}) {
        CAPTURE(size);
        std::string bytes(size, '\0');
        for (std::size_t i = 0; i < size; ++i)
            bytes[i] = static_cast<char>(i * 13);
        const std::string before = bytes;
        RecordingSink sink;
        CryptingOutputStream(sink).Write(bytes.data(), static_cast<int>(size));
        CHECK(bytes == before);
        REQUIRE(sink.calls.size() == 1);
        for (std::size_t i = 0; i < size; ++i)
            REQUIRE(sink.calls[0][i] == static_cast<char>(255 - static_cast<unsigned char>(bytes[i])));
        RecordingSource source(sink.Content());
        std::string back(size, '\0');
        CryptingInputStream(source).Read(back.data(), static_cast<int>(size));
        CHECK(back == bytes);
        CHECK(source.sizes == std::vector<int>{static_cast<int>(size)});
    }
}

TEST_CASE(
    "scrambling passes on neither empty calls nor a flush, works alike as a copy and fails with its inner stream") {
    RecordingSink sink;
    CryptingOutputStream out(sink);
    out.Write("abc", 0);
    out.Write("abc", -1);
    out.Flush();
    CHECK(sink.calls.empty());
    RecordingSink other;
    CryptingOutputStream copy(other);
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
    CHECK(Failure([&] { in.Read(bytes, 3); }) == "4: Memory block too short");
    CHECK(std::string(bytes) == "xyz");
}
