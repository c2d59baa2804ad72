#include "tests/registry/TestKey.h"

#include <atomic>
#include <climits>
#include <clocale>
#include <thread>

namespace {

using Bytes = std::string;

// Every getter's target, with what it holds before.
struct Targets {
    WideString text = u"old"_w;
    unsigned long number = 77;
    bool flag = true;
    __int64 wide = 77;
    double real = 77;
    Bytes bytes = "old";

    bool operator==(const Targets&) const = default;
};

Targets ReadAll(RegistryKey key, const WideString& name, long expected) {
    Targets read;
    CHECK(key.GetString(name, read.text) == expected);
    CHECK(key.GetInteger(name, read.number) == expected);
    CHECK(key.GetBoolean(name, read.flag) == expected);
    CHECK(key.GetInt64(name, read.wide) == expected);
    CHECK(key.GetFloat(name, read.real) == expected);
    CHECK(key.GetBinary(name, read.bytes) == expected);
    return read;
}

Targets OfText(const WideString& text, __int64 wide, double real) {
    return {.text = text, .wide = wide, .real = real};
}

// A value that is no text gives the text reader nothing, of which the number is 0.
Targets OfNumber(unsigned long number, bool flag) {
    return {.number = number, .flag = flag, .real = 0};
}

Targets OfBytes(const Bytes& bytes) {
    return {.real = 0, .bytes = bytes};
}

template <class Integer>
Integer ReadAs(RegistryKey key, Integer old) {
    CHECK(key.GetInteger(u"missing"_w, old) == ERROR_FILE_NOT_FOUND);
    CHECK(key.GetInteger(u"text"_w, old) == ERROR_SUCCESS);
    CHECK(old == 77);
    CHECK(key.GetInteger(u"number"_w, old) == ERROR_SUCCESS);
    return old;
}

} // namespace

TEST_CASE("getters take values of their own type and leave their targets at all others") {
    const TestKey test;
    const struct {
        DWORD type;
        Bytes data;
        Targets read;
    } cases[] = {
        {REG_SZ, Bytes("-5\0", 3), OfText(u"-5"_w, -5, -5)},
        {REG_SZ, Bytes("12abc\0", 6), OfText(u"12abc"_w, 12, 12)},
        {REG_SZ, Bytes(" 0.25e1x\0", 9), OfText(u" 0.25e1x"_w, 0, 2.5)},
        {REG_SZ, Bytes("9223372036854775807\0", 20), OfText(u"9223372036854775807"_w, LLONG_MAX, 9223372036854775807.)},
        {REG_SZ, Bytes("1\0002\0", 4), OfText(u"1"_w, 1, 1)},
        {REG_SZ, Bytes("\0", 1), OfText(u""_w, 0, 0)},
        {REG_SZ, "", OfText(u"old"_w, 77, 0)},
        {REG_SZ, Bytes(3000, 'x') + '\0', OfText(WideString(3000, 'x'), 0, 0)},
        {REG_DWORD, Bytes("\1\0\0\0", 4), OfNumber(1, true)},
        {REG_DWORD, Bytes("\2\0\0\0", 4), OfNumber(2, false)},
        {REG_DWORD, Bytes("\1\0\0\x80", 4), OfNumber(0x80000001, false)},
        {REG_DWORD, "\xFE", OfNumber(0xFE, false)},
        {REG_DWORD, "\1\2\3", OfNumber(0x030201, false)},
        {REG_DWORD, Bytes("\1\0\0\0\1", 5), OfNumber(1, true)},
        {REG_DWORD, "", OfNumber(77, true)},
        {REG_BINARY, Bytes("\0a\0", 3), OfBytes(Bytes("\0a\0", 3))},
        {REG_BINARY, "", OfBytes("old")},
        {REG_EXPAND_SZ, Bytes("1\0", 2), OfBytes("old")},
        {REG_MULTI_SZ, Bytes("1\0\0", 3), OfBytes("old")},
        {REG_QWORD, Bytes(8, '\1'), OfBytes("old")},
        {REG_NONE, "1", OfBytes("old")},
    };
    for (const auto& row : cases) {
        INFO(row.type, " ", row.data.size());
        test.Store("value", row.type, row.data);
        CHECK(ReadAll(test.Open(KEY_READ), u"value"_w, ERROR_SUCCESS) == row.read);
    }
    CHECK(ReadAll(test.Open(), u"missing"_w, ERROR_FILE_NOT_FOUND) == Targets());
}

TEST_CASE("every integer target takes what fits of the 32 bits") {
    const TestKey test;
    test.Store("number", REG_DWORD, "\xFE\xFF\xFF\xFF");
    test.Store("text", REG_SZ, "5");
    const RegistryKey key = test.Open();
    CHECK(ReadAs<unsigned long>(key, 77) == 0xFFFFFFFE);
    CHECK(ReadAs<unsigned int>(key, 77) == 0xFFFFFFFE);
    CHECK(ReadAs<unsigned short>(key, 77) == 0xFFFE);
    CHECK(ReadAs<long>(key, 77) == -2);
    CHECK(ReadAs<int>(key, 77) == -2);
    CHECK(ReadAs<short>(key, 77) == -2);
}

TEST_CASE("setters store exact types and bytes, under names of the code page that are found in either case") {
    const TestKey test;
    RegistryKey key = test.Open();
    const unsigned char bytes[] = {0, 255, 0};
    const struct {
        long error;
        Bytes stored;
    } rows[] = {
        {key.SetString(u"0"_w, u"text"_w), Bytes("1:text\0", 7)},
        {key.SetString(u"1"_w, u"cut\0\0"_w), Bytes("1:cut\0", 6)},
        {key.SetString(u"2"_w, u""_w), Bytes("1:\0", 3)},
        {key.SetInteger(u"3"_w, 0x80000102), Bytes("4:\2\1\0\x80", 6)},
        {key.SetBoolean(u"4"_w, true), Bytes("4:\1\0\0\0", 6)},
        {key.SetBoolean(u"5"_w, false), Bytes("4:\0\0\0\0", 6)},
        {key.SetInt64(u"6"_w, -5), Bytes("1:-5\0", 5)},
        {key.SetInt64(u"7"_w, LLONG_MIN), Bytes("1:-9223372036854775808\0", 23)},
        {key.SetFloat(u"8"_w, 0.1), Bytes("1:0.100000\0", 11)},
        {key.SetFloat(u"9"_w, -1e300), Bytes()},
        {key.SetBinary(u"10"_w, bytes, 3), Bytes("3:\0\xFF\0", 5)},
        {key.SetBinary(u"11"_w, Bytes("a\0b", 3)), Bytes("3:a\0b", 5)},
        {key.SetBinary(u"12"_w, Bytes()), Bytes("3:")},
        {key.SetString(u""_w, u"default"_w), Bytes("1:default\0", 10)},
    };
    for (std::size_t i = 0; i != std::size(rows); ++i) {
        CAPTURE(i);
        const std::string name = i + 1 == std::size(rows) ? "" : std::to_string(i);
        CHECK(rows[i].error == ERROR_SUCCESS);
        CHECK((rows[i].stored.empty() || test.Stored(name.c_str()) == rows[i].stored));
    }
    double large = 0;
    CHECK((key.GetFloat(u"9"_w, large) == ERROR_SUCCESS && large == -1e300));
    CHECK(key.DeleteValue(u"0"_w) == ERROR_SUCCESS);
    CHECK(key.DeleteValue(u"0"_w) == ERROR_FILE_NOT_FOUND);

    WideString text;
    CHECK(key.SetString(u"Gr\u00F6\u00DFe"_w, u"\u00E9t\u00E9"_w) == ERROR_SUCCESS);
    CHECK(key.GetString(u"GR\u00D6\u00DFE"_w, text) == ERROR_SUCCESS);
    CHECK(text == u"\u00E9t\u00E9"_w);
}

TEST_CASE("numbers are read under every locale") {
    const TestKey test;
    RegistryKey key = test.Open();
    test.Store("point", REG_SZ, std::string(" -.25e1x\0", 9));
    const std::string before = std::setlocale(LC_NUMERIC, nullptr);
    // One whose decimal point is a comma; where there is none, this shows nothing new.
    for (const char* const locale : {"de_DE.UTF-8", "fr_FR.UTF-8", "German_Germany"})
        if (std::setlocale(LC_NUMERIC, locale) != nullptr)
            break;
    double stored = 0, point = 0;
    CHECK(key.SetFloat(u"number"_w, 2.5) == ERROR_SUCCESS);
    CHECK(key.GetFloat(u"number"_w, stored) == ERROR_SUCCESS);
    CHECK(key.GetFloat(u"point"_w, point) == ERROR_SUCCESS);
    std::setlocale(LC_NUMERIC, before.c_str());
    CHECK(stored == 2.5);
    CHECK(point == -2.5);
}

TEST_CASE("a value that changes between the two queries is read no further than it was long") {
    const TestKey test;
    const WideString texts[] = {u"short"_w, WideString(2000, 'L')};
    RegistryKey reader = test.Open();
    REQUIRE(reader.SetString(u"value"_w, texts[0]) == ERROR_SUCCESS);
    std::atomic<bool> done = false;
    std::thread writer([&, key = test.Open()]() mutable {
        for (int i = 0; !done; ++i)
            key.SetString(u"value"_w, texts[i % 2]);
    });
    int partial = 0;
    for (int i = 0; i != 1000; ++i) {
        WideString read = u"?"_w;
        partial += reader.GetString(u"value"_w, read) != ERROR_SUCCESS ||
                   (texts[0].compare(0, read.size(), read) != 0 && texts[1].compare(0, read.size(), read) != 0);
    }
    done = true;
    writer.join();
    CHECK(partial == 0);
}
