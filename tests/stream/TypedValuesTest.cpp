#include "tests/stream/Probes.h"

#include <type_traits>

namespace {

using Wide = WideString;

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

template <class Value, class = void>
struct CanInsert : std::false_type {};
template <class Value>
struct CanInsert<Value, decltype(void(std::declval<OutputStream&>() << std::declval<Value>()))> : std::true_type {};

static_assert(!CanInsert<unsigned __int64>::value && !CanInsert<const unsigned short*>::value);
static_assert(!CanInsert<const wchar_t*>::value && !CanInsert<void*>::value && CanInsert<char*>::value);

} // namespace

TEST_CASE("every type is written and read by its stated calls and bytes") {
    Exchange(true, {"01"});
    Exchange('\xE9', {"E9"});
    Exchange(static_cast<unsigned char>(200), {"C8"});
    Exchange(static_cast<short>(-2), {"FE FF"});
    Exchange(static_cast<unsigned short>(0x1234), {"34 12"});
    Exchange(-258, {"FE FE FF FF"});
    Exchange(0xFEDCBA98u, {"98 BA DC FE"});
    Exchange(-258L, {"FE FE FF FF"});
    Exchange(0xFEDCBA98ul, {"98 BA DC FE"});
    Exchange(1.0, {"00 00 00 00 00 00 F0 3F"});
    Exchange(-0.5f, {"00 00 00 BF"});
    Exchange(static_cast<__int64>(-2), {"FE FF FF FF FF FF FF FF"});
    Exchange(NarrowString("a\0b", 3), {"03 00 00 00", "61 00 62"});
    Exchange(Wide({0x41, 0xD800}), {"04 00 00 00", "41 00 00 D8"});
    RecordingSink sink;
    sink << "a\0b"
         << "";
    CHECK(sink.calls == std::vector<std::string>{Word(1), "a", Word(0), ""});
    // Any byte but zero reads as true, and is a true of value 1.
    MemoryInputStream source("\x80\0", 2);
    bool flags[2] = {false, true};
    source >> flags[0] >> flags[1];
    CHECK(std::memcmp(flags, "\1", 2) == 0);
}

TEST_CASE("a wide text ends at its first zero unit, drops an odd byte and takes all of its bytes") {
    const std::pair<std::string, WideString> rows[] = {
        {std::string("A\0\0\0B\0", 6), Wide({0x41})},
        {std::string("A\0B", 3), Wide({0x41})},
        {std::string("A", 1), WideString()},
        {std::string("\0\0A\0", 4), WideString()},
    };
    for (const auto& [bytes, expected] : rows) {
        CAPTURE(Hex(bytes));
        const std::string stored = Word(static_cast<std::uint32_t>(bytes.size())) + bytes + "!";
        MemoryInputStream source(stored);
        WideString text = Wide({1, 2, 3});
        char next = 0;
        source >> text >> next;
        CHECK(text == expected);
        CHECK(next == '!');
    }
}

TEST_CASE("texts of every size around the steps of reading come back, in two reads up to 64 KiB") {
    for (const std::size_t size : {0, 1, 2, 3, 15, 16, 17, 127, 128, 129, 4095, 65535, 65536, 65537, 200000}) {
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
    const auto cutShort = [](const std::string& stored, auto kept) {
        MemoryInputStream source(stored);
        auto value = kept;
        CHECK(Failure([&] { source >> value; }) == kTooShort);
        CHECK(value == kept);
    };
    cutShort("abc", 7);
    for (const std::uint32_t size : {1u, 128u, 129u, 65536u, 65537u, 0x7FFFFFFFu}) {
        CAPTURE(size);
        const std::string stored = Word(size) + std::string(std::min(size, 65537u) - 1, 'x');
        cutShort(stored, NarrowString("kept"));
        cutShort(stored, Wide({1}));
    }
}
