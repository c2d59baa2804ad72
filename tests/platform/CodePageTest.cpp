#include <doctest/doctest.h>
#include <kelcore/platform.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace {

using Units = std::basic_string<WCHAR>;

Units Wide(const std::u16string& text) {
    return {text.begin(), text.end()};
}

struct Answer {
    int size;
    DWORD error; // 0 after a success
};

Answer Encode(UINT page, DWORD flags, const Units& text, std::string& bytes, const char* missing = nullptr,
              BOOL* used = nullptr) {
    SetLastError(0);
    const int size = WideCharToMultiByte(page, flags, text.data(), static_cast<int>(text.size()), bytes.data(),
                                         static_cast<int>(bytes.size()), missing, used);
    return {size, size == 0 ? GetLastError() : 0};
}

Answer Decode(UINT page, DWORD flags, const std::string& bytes, Units& text) {
    SetLastError(0);
    const int size = MultiByteToWideChar(page, flags, bytes.data(), static_cast<int>(bytes.size()), text.data(),
                                         static_cast<int>(text.size()));
    return {size, size == 0 ? GetLastError() : 0};
}

/// The result in room of exactly the size that the call asks for; its neighbours must stay as they are.
std::string Encoded(UINT page, const Units& text, DWORD flags = 0) {
    std::string bytes;
    const int size = Encode(page, flags, text, bytes).size;
    bytes.assign(static_cast<std::size_t>(size), '\xEE');
    CHECK(Encode(page, flags, text, bytes).size == size);
    return bytes;
}

Units Decoded(UINT page, const std::string& bytes) {
    Units text;
    const int size = Decode(page, 0, bytes, text).size;
    text.assign(static_cast<std::size_t>(size), 0xEEEE);
    CHECK(Decode(page, 0, bytes, text).size == size);
    return text;
}

} // namespace

TEST_CASE("a page gives each character its bytes and takes them back") {
    struct Row {
        UINT page;
        std::u16string text;
        std::string bytes;
    };
    const Row rows[] = {
        {65001, u"A\u00E9\u0416\u20AC\u4E00\U0001F600\U0010FFFF",
         "A\xC3\xA9\xD0\x96\xE2\x82\xAC\xE4\xB8\x80\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF"},
        {65001, u"\u007F\u0080\u07FF\u0800\uD7FF\uE000\uFFFF\U00010000",
         "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF\xF0\x90\x80\x80"},
        {1252, u"a\u20AC\u0081\u201C\u00FF\u00A0", "a\x80\x81\x93\xFF\xA0"},
        {1251, u"\u0416\u044F\u0401", "\xC6\xFF\xA8"},
        {1253, u"\u03B1\uF8F9", "\xE1\xAA"},
        {932, u"a\uFF71\u4E00\u30BD\u2252", "a\xB1\x88\xEA\x83\x5C\x81\xE0"},
        {936, u"\u4E2D", "\xD6\xD0"},
        {949, u"\uAC00", "\xB0\xA1"},
        {28591, u"\u00E9\u0085", "\xE9\x85"},
        {20866, u"\u042F", "\xF1"},
        {37, u"A1", "\xC1\xF1"},
    };
    for (const Row& row : rows) {
        CAPTURE(row.page);
        CHECK(Encoded(row.page, Wide(row.text)) == row.bytes);
        CHECK(Decoded(row.page, row.bytes) == Wide(row.text));
    }
}

TEST_CASE("bytes and units without a meaning are replaced, or refused on demand") {
    struct Row {
        UINT page;
        std::string bytes;
        std::u16string text;
    };
    const Row malformed[] = {
        {65001, "a\x80z", u"a\uFFFDz"},
        {65001, "\xC0\xAFz", u"\uFFFD\uFFFDz"},
        {65001, "\xE2\x82zyx", u"\uFFFDzyx"},
        {65001, "\xF0\x9F\x98zyx", u"\uFFFDzyx"},
        {65001, "\xF4\x8F\xBF", u"\uFFFD"},
        {65001, "\xF5\xFF\xFE", u"\uFFFD\uFFFD\uFFFD"},
        {932, "a\x81", u"a\u30FB"},
        {932, "\x81\x39z", u"\u30FBz"},
        {932, std::string("\x81\0z", 3), std::u16string(u"\u30FB\0z", 3)},
        {932, "\xA0\xFF", u"\uF8F0\uF8F3"},
        {949, "\xC9\x20z", u"?z"},
    };
    for (const Row& row : malformed) {
        CAPTURE(row.bytes);
        CHECK(Decoded(row.page, row.bytes) == Wide(row.text));
        Units none;
        const Answer strict = Decode(row.page, MB_ERR_INVALID_CHARS, row.bytes, none);
        CHECK(strict.error == ERROR_NO_UNICODE_TRANSLATION);
    }

    std::string bytes;
    const Units lone = Wide({u'a', 0xD800, u'b', 0xDC00, u'c', 0xD83D});
    CHECK(Encoded(65001, lone) == "a\xEF\xBF\xBD"
                                  "b\xEF\xBF\xBD"
                                  "c\xEF\xBF\xBD");
    CHECK(Encode(65001, WC_ERR_INVALID_CHARS, lone, bytes).error == ERROR_NO_UNICODE_TRANSLATION);
    CHECK(Encode(65001, WC_ERR_INVALID_CHARS, Wide(u"\U0001F600"), bytes).size == 4);
}

TEST_CASE("units without a counterpart become the default character, and the caller learns of it") {
    struct Row {
        UINT page;
        const char* missing;
        std::u16string text;
        std::string bytes;
        BOOL used;
    };
    const Row rows[] = {
        {1252, nullptr, u"a\u0416\U0001F600", "a???", TRUE},
        {1252, "#x", u"a\u0416", "a#", TRUE},
        {1252, "#", u"ab", "ab", FALSE},
        {932, "\x81\x40", u"\u0E01z", "\x81\x40z", TRUE},
        {20127, nullptr, u"\u0100", "?", TRUE},
    };
    for (const Row& row : rows) {
        CAPTURE(row.bytes);
        std::string bytes(row.bytes.size(), '\0');
        BOOL used = 7;
        CHECK(Encode(row.page, WC_NO_BEST_FIT_CHARS, Wide(row.text), bytes, row.missing, &used).size ==
              static_cast<int>(bytes.size()));
        CHECK(bytes == row.bytes);
        CHECK(used == row.used);
    }
}

TEST_CASE("lengths, sizes and flags are checked") {
    char bytes[8] = {};
    WCHAR units[8] = {};
    CHECK(WideCharToMultiByte(CP_UTF8, 0, Wide(u"ab").c_str(), -1, nullptr, 0, nullptr, nullptr) == 3);
    CHECK(MultiByteToWideChar(932, 0,
                              "\x88\xEA"
                              "b",
                              -5, units, 8) == 3);
    CHECK((units[0] == 0x4E00 && units[1] == 'b' && units[2] == 0));

    const auto encode = [&](UINT page, DWORD flags, const WCHAR* from, int count, char* to, int room) {
        SetLastError(0);
        CHECK(WideCharToMultiByte(page, flags, from, count, to, room, nullptr, nullptr) == 0);
        return GetLastError();
    };
    const auto decode = [&](UINT page, DWORD flags, const char* from, int count, WCHAR* to, int room) {
        SetLastError(0);
        CHECK(MultiByteToWideChar(page, flags, from, count, to, room) == 0);
        return GetLastError();
    };
    const Units euro = Wide(u"a\u20AC");
    for (const UINT page : {CP_UTF8, 932}) {
        CAPTURE(page);
        CHECK(encode(page, 0, euro.data(), 0, bytes, 8) == ERROR_INVALID_PARAMETER);
        CHECK(encode(page, 0, nullptr, 2, bytes, 8) == ERROR_INVALID_PARAMETER);
        CHECK(encode(page, 0, euro.data(), 2, nullptr, 8) == ERROR_INVALID_PARAMETER);
        CHECK(encode(page, 0, euro.data(), 2, bytes, -1) == ERROR_INVALID_PARAMETER);
        CHECK(encode(page, 0x800, euro.data(), 2, bytes, 8) == ERROR_INVALID_FLAGS);
        CHECK(encode(page, 0, euro.data(), 2, bytes, 1) == ERROR_INSUFFICIENT_BUFFER);
        CHECK(decode(page, 0, "ab", 0, units, 8) == ERROR_INVALID_PARAMETER);
        CHECK(decode(page, 0x100, "ab", 2, units, 8) == ERROR_INVALID_FLAGS);
        CHECK(decode(page, 0, "ab", 2, units, 1) == ERROR_INSUFFICIENT_BUFFER);
    }
    CHECK(encode(99999, 0, euro.data(), 2, bytes, 8) == ERROR_INVALID_PARAMETER);
    CHECK(decode(99999, 0, "ab", 2, units, 8) == ERROR_INVALID_PARAMETER);
}

TEST_CASE("a page is described by its character size and its lead bytes") {
    struct Row {
        UINT page;
        UINT most;
        std::string defaultChar;
        std::string leads;
    };
    const Row rows[] = {{65001, 4, "?", ""},
                        {1252, 1, "?", ""},
                        {37, 1, "\x6F", ""},
                        {932, 2, "?", "\x81\x9F\xE0\xFC"},
                        {936, 2, "?", "\x81\xFE"}};
    for (const Row& row : rows) {
        CAPTURE(row.page);
        CPINFO info;
        std::memset(&info, 0xAA, sizeof info);
        CHECK(IsValidCodePage(row.page) != 0);
        REQUIRE(GetCPInfo(row.page, &info) != 0);
        CHECK(info.MaxCharSize == row.most);
        CHECK(std::string(reinterpret_cast<char*>(info.DefaultChar)) == row.defaultChar);
        CHECK(std::string(reinterpret_cast<char*>(info.LeadByte), row.leads.size() + 1) == row.leads + '\0');
    }
    CPINFO info;
    CHECK(GetCPInfo(99999, &info) == 0);
    CHECK(GetLastError() == ERROR_INVALID_PARAMETER);
    CHECK(IsValidCodePage(99999) == 0);
    CHECK(IsValidCodePage(CP_ACP) == 0);
    CHECK(IsValidCodePage(GetACP()) != 0);
    CHECK(IsDBCSLeadByteEx(932, 0x81) != 0);
    CHECK(IsDBCSLeadByteEx(932, 0xB1) == 0);
    CHECK(IsDBCSLeadByteEx(CP_UTF8, 0xE3) == 0);
    CHECK(IsDBCSLeadByte('a') == 0);
    CHECK(AreFileApisANSI() != 0);
}

// The roads for long texts against those for single characters, at every length and so at every end of a vector.
TEST_CASE("a text of any length converts as its characters do one by one") {
    const std::vector<Units> characters = {Wide(u"a"),      Wide(u"~"),      Wide(u"\u00E9"),    Wide(u"\u20AC"),
                                           Wide(u"\u0416"), Wide(u"\uFF71"), Wide(u"\u30BD"),    Wide(u"\u4E00"),
                                           Wide(u"\u0E01"), Wide(u"\uFFFF"), Wide(u"\U0001F600")};
    std::mt19937 random(20);
    for (const UINT page : {65001u, 1252u, 932u}) {
        const DWORD flags = page == 65001 ? 0 : WC_NO_BEST_FIT_CHARS;
        for (std::size_t length = 1; length <= 130; ++length) {
            CAPTURE(page);
            CAPTURE(length);
            // From ASCII alone to a mix, at another alignment each time.
            const std::size_t kinds = 1 + random() % characters.size();
            const std::size_t offset = random() % 8;
            Units text(offset, 'x');
            std::string bytes(offset, 'x');
            Units back(offset, 'x');
            for (std::size_t i = 0; i < length; ++i) {
                const Units& character = characters[random() % 4 == 0 ? random() % kinds : 0];
                const std::string one = Encoded(page, character, flags);
                text += character;
                bytes += one;
                back += Decoded(page, one);
            }
            CHECK(Encoded(page, text, flags) == bytes);
            CHECK(Decoded(page, bytes) == back);
            std::string room(bytes.size() - 1, '\0');
            CHECK((room.empty() || Encode(page, flags, text, room).error == ERROR_INSUFFICIENT_BUFFER));
        }
    }
}
