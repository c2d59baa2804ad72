#include "tests/stream/Probes.h"

#include <functional>
#include <limits>
#include <type_traits>

namespace {

WideString Wide(std::initializer_list<unsigned short> units) {
    return WideString(units);
}

// Writes a value, compares the calls and their bytes, and reads it back with as many reads.
template <class Value>
void Exchange(const Value& value, const std::vector<std::string>& calls) {
    RecordingSink sink;
    CHECK(&(sink << value) == &sink);
    std::vector<std::string> written;
    std::vector<int> sizes;
    for (const std::string& call : sink.calls) {
        written.push_back(Hex(call));
        sizes.push_back(static_cast<int>(call.size()));
    }
    CHECK(written == calls);
    RecordingSource source(sink.Content());
    Value back{};
    CHECK(&(source >> back) == &source);
    CHECK(back == value);
    CHECK(source.sizes == sizes);
}

template <class Text>
std::string ReadFrom(const std::string& stored, Text& text) {
    MemoryInputStream source(stored);
    return Failure([&] { source >> text; });
}

template <class Value, class = void>
struct CanInsert : std::false_type {};
template <class Value>
struct CanInsert<Value, decltype(void(std::declval<OutputStream&>() << std::declval<Value>()))> : std::true_type {};

} // namespace

TEST_CASE("every type is written and read by its stated calls and bytes") {
    Exchange(true, {"01"});
    Exchange(false, {"00"});
    Exchange('\xE9', {"E9"});
    Exchange(static_cast<unsigned char>(200), {"C8"});
    Exchange(static_cast<short>(-2), {"FE FF"});
    Exchange(static_cast<unsigned short>(0x1234), {"34 12"});
    Exchange(258, {"02 01 00 00"});
    Exchange(-1, {"FF FF FF FF"});
    Exchange(0xFEDCBA98u, {"98 BA DC FE"});
    Exchange(-258L, {"FE FE FF FF"});
    Exchange(0xFEDCBA98ul, {"98 BA DC FE"});
    Exchange(1.0, {"00 00 00 00 00 00 F0 3F"});
    Exchange(-0.5f, {"00 00 00 BF"});
    Exchange(static_cast<__int64>(-2), {"FE FF FF FF FF FF FF FF"});
    Exchange(NarrowString(), {"00 00 00 00", ""});
    Exchange(NarrowString("a\0b", 3), {"03 00 00 00", "61 00 62"});
    Exchange(WideString(), {"00 00 00 00", ""});
    Exchange(Wide({0x41, 0x42}), {"04 00 00 00", "41 00 42 00"});
    Exchange(Wide({0xD800}), {"02 00 00 00", "00 D8"});
}

TEST_CASE("a zero-terminated text is written up to its terminator") {
    RecordingSink sink;
    sink << "abc"
         << "";
    CHECK(sink.calls == std::vector<std::string>{std::string("\3\0\0\0", 4), "abc", std::string(4, '\0'), ""});
}

TEST_CASE("what no operator is meant for does not compile") {
    CHECK_FALSE(CanInsert<unsigned __int64>::value);
    CHECK_FALSE(CanInsert<const unsigned short*>::value);
    CHECK_FALSE(CanInsert<const wchar_t*>::value);
    CHECK_FALSE(CanInsert<void*>::value);
    CHECK(CanInsert<char*>::value);
}

TEST_CASE("any byte but zero reads as true, and a stored true is 1") {
    MemoryInputStream source("\x80\0", 2);
    bool first = false;
    bool second = true;
    source >> first >> second;
    unsigned char stored = 0;
    std::memcpy(&stored, &first, 1);
    CHECK(stored == 1);
    CHECK_FALSE(second);
}

TEST_CASE("a wide text ends at its first zero unit, drops an odd byte and takes all of its bytes") {
    const struct {
        std::string stored;
        WideString text;
    } rows[] = {
        {std::string("\6\0\0\0A\0\0\0B\0", 10), Wide({0x41})},
        {std::string("\3\0\0\0A\0B", 7), Wide({0x41})},
        {std::string("\1\0\0\0A", 5), WideString()},
        {std::string("\4\0\0\0\0\0A\0", 8), WideString()},
        {std::string("\5\0\0\0A\0B\0\0", 9), Wide({0x41, 0x42})},
    };
    for (const auto& row : rows) {
        CAPTURE(Hex(row.stored));
        const std::string stored = row.stored + "!";
        MemoryInputStream source(stored);
        WideString text = Wide({1, 2, 3});
        char next = 0;
        source >> text >> next;
        CHECK(text == row.text);
        CHECK(next == '!');
    }
}

TEST_CASE("texts of every size around the steps of reading come back, in two reads up to 64 KiB") {
    for (const std::size_t size : {0, 1, 2, 3, 4, 7, 8, 15, 16, 17, 127, 128, 129, 4095, 65535, 65536, 65537, 200000}) {
        CAPTURE(size);
        MemoryOutputStream memory;
        const NarrowString narrow(size, 'n');
        const WideString wide(size / 2, static_cast<unsigned short>(0x4E2D));
        memory << narrow << wide;
        RecordingSource source(memory.GetContent());
        NarrowString narrowBack = "old";
        WideString wideBack;
        source >> narrowBack >> wideBack;
        CHECK((narrowBack == narrow && wideBack == wide));
        if (size <= 65536)
            CHECK(source.sizes == std::vector<int>{4, static_cast<int>(size), 4, static_cast<int>(size / 2 * 2)});
        for (const int asked : source.sizes)
            CHECK(asked <= 65536);
    }
}

TEST_CASE("a value that is cut short leaves number and text unchanged") {
    int number = 7;
    MemoryInputStream three("abc", 3);
    CHECK(Failure([&] { three >> number; }) == "4: Memory block too short");
    CHECK(number == 7);
    for (const std::size_t size : {1, 128, 129, 65536, 65537, 0x7FFFFFFF}) {
        CAPTURE(size);
        MemoryOutputStream length;
        length << static_cast<unsigned int>(size);
        const std::string stored = length.GetContent() + std::string(std::min<std::size_t>(size, 65537) - 1, 'x');
        NarrowString narrow = "kept";
        WideString wide = Wide({1});
        CHECK(ReadFrom(stored, narrow) == "4: Memory block too short");
        CHECK(ReadFrom(stored, wide) == "4: Memory block too short");
        CHECK((narrow == "kept" && wide == Wide({1})));
    }
}
