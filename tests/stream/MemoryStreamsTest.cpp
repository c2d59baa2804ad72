#include "tests/stream/Probes.h"

TEST_CASE("a memory sink keeps all bytes in order and gives copies of them") {
    MemoryOutputStream sink;
    for (const int size : {2, 0, -1, 4})
        sink.Write("ab\0c", size);
    sink.Flush();
    const MemoryOutputStream copy(sink);
    sink.Write("d", 1);
    CHECK(Hex(sink.GetContent()) == "61 62 61 62 00 63 64");
    CHECK(Hex(copy.GetContent()) == "61 62 61 62 00 63");
}

TEST_CASE("a memory source refuses what it has not, and stays where it is") {
    MemoryInputStream source("abcdef", 6);
    char bytes[8] = "xxxxxxx";
    source.Read(bytes, 4);
    MemoryInputStream copy(source);
    CHECK(Failure([&] { source.Read(bytes, 4); }) == kTooShort);
    source.Read(bytes, -1);
    CHECK(std::string(bytes) == "abcdxxx");
    source.Read(bytes, 2);
    copy.Read(bytes + 2, 1);
    source = copy;
    source.Read(bytes + 3, 1);
    CHECK(std::string(bytes) == "efefxxx");
    MemoryInputStream empty("abc", 0), negative("abc", -1);
    empty.Read(bytes, 0);
    for (MemoryInputStream* const none : {&empty, &negative})
        CHECK(Failure([&] { none->Read(bytes, 1); }) == kTooShort);
}

TEST_CASE("reads of every size deliver exactly their bytes") {
    const std::string block = RandomBytes(40);
    for (std::size_t size = 1; size <= block.size(); ++size) {
        MemoryInputStream source(block);
        std::string bytes(size + 2, '#');
        source.Read(&bytes[1], static_cast<int>(size));
        CHECK(bytes == "#" + block.substr(0, size) + "#");
    }
}
