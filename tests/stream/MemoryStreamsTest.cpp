#include "tests/stream/Probes.h"

TEST_CASE("a memory sink keeps all bytes in order and gives copies of them") {
    MemoryOutputStream sink;
    sink.Write("ab", 2);
    sink.Write("x", 0);
    sink.Write("x", -1);
    sink.Write("\0c", 2);
    sink.Flush();
    const MemoryOutputStream copy(sink);
    sink.Write("d", 1);
    CHECK(sink.GetContent() == std::string("ab\0cd", 5));
    CHECK(sink.GetContent() == sink.GetContent());
    CHECK(copy.GetContent() == std::string("ab\0c", 4));
}

TEST_CASE("a memory source refuses what it has not, and stays where it is") {
    MemoryInputStream source("abcdef", 6);
    char bytes[8] = "xxxxxxx";
    source.Read(bytes, 4);
    CHECK(std::string(bytes) == "abcdxxx");
    MemoryInputStream copy(source);
    CHECK(Failure([&] { source.Read(bytes, 4); }) == "4: Memory block too short");
    CHECK(Failure([&] { source.Read(bytes, -1); }) == "");
    CHECK(std::string(bytes) == "abcdxxx");
    source.Read(bytes, 2);
    CHECK(std::string(bytes) == "efcdxxx");
    copy.Read(bytes, 1);
    CHECK(bytes[0] == 'e');
    source = copy;
    source.Read(bytes, 1);
    CHECK(bytes[0] == 'f');
}

TEST_CASE("an empty block and a block of negative size hold nothing") {
    char byte = 'x';
    const std::string none;
    MemoryInputStream empty(none);
    CHECK(Failure([&] { empty.Read(&byte, 0); }) == "");
    CHECK(Failure([&] { empty.Read(&byte, 1); }) == "4: Memory block too short");
    MemoryInputStream negative("abc", -1);
    CHECK(Failure([&] { negative.Read(&byte, 1); }) == "4: Memory block too short");
    CHECK(byte == 'x');
}

TEST_CASE("reads of every size deliver exactly their bytes") {
    std::string block(300, '\0');
    for (std::size_t i = 0; i < block.size(); ++i)
        block[i] = static_cast<char>(i * 7);
    for (int size = 1; size <= 40; ++size) {
        CAPTURE(size);
        MemoryInputStream source(block);
        std::string bytes(static_cast<std::size_t>(size) + 2, '#');
        source.Read(&bytes[1], size);
        CHECK(bytes == "#" + block.substr(0, static_cast<std::size_t>(size)) + "#");
    }
}
