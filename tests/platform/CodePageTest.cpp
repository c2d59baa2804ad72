#include "Workplace.h"

#include <cstring>
#include <random>
#include <string>

namespace {

using Units = std::basic_string<WCHAR>;

Units Wide(const std::u16string& text) {
    return {text.begin(), text.end()};
}

int Encode(UINT page, DWORD flags, const Units& text, std::string& bytes, const char* missing = nullptr,
           BOOL* used = nullptr) {
    return WideCharToMultiByte(page, flags, text.data(), static_cast<int>(text.size()), bytes.data(),
                               static_cast<int>(bytes.size()), missing, used);
}

int Decode(UINT page, DWORD flags, const std::string& bytes, Units& text) {
    return MultiByteToWideChar(page, flags, bytes.data(), static_cast<int>(bytes.size()), text.data(),
                               static_cast<int>(text.size()));
}

/// The result in room of exactly the size that the call asks for; its neighbours must stay as they are.
std::string Encoded(UINT page, const Units& text, DWORD flags = 0) {
    std::string bytes;
    const int size = Encode(page, flags, text, bytes);
    bytes.assign(static_cast<std::size_t>(size), '\xEE');
    CHECK(Encode(page, flags, text, bytes) == size);
    return bytes;
}

Units Decoded(UINT page, const std::string& bytes) {
    Units text;
    const int size = Decode(page, 0, bytes, text);
    text.assign(static_cast<std::size_t>(size), 0xEEEE);
    CHECK(Decode(page, 0, bytes, text) == size);
    return text;
}

} // namespace

TEST_CASE("a page gives each character its bytes and takes them back") {
    const auto gives = [](UINT page, const std::u16string& text, const std::string& bytes) {
        CAPTURE(page);
        CHECK(Encoded(page, Wide(text)) == bytes);
        CHECK(Decoded(page, bytes) == Wide(text));
    };
    gives(65001, u"\u007F\u0080\u07FF\u0800\uD7FF\uE000\uFFFF\U00010000\U0010FFFF",
          "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF");
    gives(1252, u"a\u20AC\u0081\u201C\u00FF\u00A0", "a\x80\x81\x93\xFF\xA0");
    gives(1253, u"\u03B1\uF8F9", "\xE1\xAA");
    gives(932, u"a\uFF71\u4E00\u30BD\u2252", "a\xB1\x88\xEA\x83\x5C\x81\xE0");
    gives(949, u"\uAC00", "\xB0\xA1");
    gives(28591, u"\u00E9\u0085", "\xE9\x85");
}

TEST_CASE("bytes and units without a meaning are replaced, or refused on demand") {
    const auto replaces = [](UINT page, const std::string& bytes, const std::u16string& text) {
        CAPTURE(bytes);
        CHECK(Decoded(page, bytes) == Wide(text));
        Units none;
        CHECK(ErrorOf(Decode(page, MB_ERR_INVALID_CHARS, bytes, none)) == ERROR_NO_UNICODE_TRANSLATION);
    };
    replaces(65001, "a\x80z", u"a\uFFFDz");
    replaces(65001, "\xC0\xAFz", u"\uFFFD\uFFFDz");
    replaces(65001, "\xE2\x82zyx", u"\uFFFDzyx");
    replaces(65001, "\xF4\x8F\xBF", u"\uFFFD");
    replaces(65001, "\xF5\xFF\xFE", u"\uFFFD\uFFFD\uFFFD");
    replaces(932, "a\x81", u"a\u30FB");
    replaces(932, "\x81\x39z", u"\u30FBz");
    replaces(932, std::string("\x81\0z", 3), std::u16string(u"\u30FB\0z", 3));
    replaces(932, "\xA0\xFF", u"\uF8F0\uF8F3");
    replaces(949, "\xC9\x20z", u"?z");

    if (kOnLayer) { // each maximal part of a sequence becomes one replacement character
        replaces(65001, "\xE0\x80\x80z", u"\uFFFD\uFFFD\uFFFDz");
        replaces(65001, "\xED\xA0\x80z", u"\uFFFD\uFFFD\uFFFDz");
        replaces(65001, "\xF0\x9F\x98\xE4\xB8", u"\uFFFD\uFFFD");
        replaces(65001, "\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD");
    }
    std::string bytes;
    const Units lone = Wide({u'a', 0xD800, u'b', 0xDC00, u'c', 0xD83D});
    CHECK(Encoded(65001, lone) == "a\uFFFDb\uFFFDc\uFFFD");
    CHECK(ErrorOf(Encode(65001, WC_ERR_INVALID_CHARS, lone, bytes)) == ERROR_NO_UNICODE_TRANSLATION);
    CHECK(Encode(65001, WC_ERR_INVALID_CHARS, Wide(u"\U0001F600"), bytes) == 4);
}

TEST_CASE("units without a counterpart become the default character, and the caller learns of it") {
    const auto becomes = [](UINT page, const char* missing, const std::u16string& text, const std::string& expected,
                            BOOL expectedUse) {
        CAPTURE(expected);
        std::string bytes(expected.size(), '\0');
        BOOL used = 7;
        CHECK(Encode(page, WC_NO_BEST_FIT_CHARS, Wide(text), bytes, missing, &used) == static_cast<int>(bytes.size()));
        CHECK(bytes == expected);
        CHECK(used == expectedUse);
    };
    becomes(1252, nullptr, u"a\u0416\U0001F600", "a???", TRUE);
    becomes(1252, "#x", u"a\u0416", "a#", TRUE);
    becomes(932, "\x81\x40", u"\u0E01z", "\x81\x40z", TRUE);
}

TEST_CASE("lengths, sizes and flags are checked") {
    char bytes[8] = {};
    WCHAR units[8] = {};
    CHECK(WideCharToMultiByte(CP_UTF8, 0, Wide(u"ab").c_str(), -1, nullptr, 0, nullptr, nullptr) == 3);
    CHECK(MultiByteToWideChar(932, 0, "\x88\xEA\x40", -5, units, 8) == 3);
    CHECK((units[0] == 0x4E00 && units[1] == '@' && units[2] == 0));

    const Units text = Wide(u"a\u20AC");
    const auto refuses = [&](UINT page, DWORD flags, int count, int room, DWORD error) {
        INFO(page, " ", flags, " ", count, " ", room);
        CHECK(ErrorOf(WideCharToMultiByte(page, flags, text.data(), count, bytes, room, nullptr, nullptr)) == error);
        CHECK(ErrorOf(MultiByteToWideChar(page, flags, "ab", count, units, room)) == error);
    };
    for (const UINT page : {CP_UTF8, 932}) {
        refuses(page, 0, 0, 8, ERROR_INVALID_PARAMETER);
        refuses(page, 0, 2, -1, ERROR_INVALID_PARAMETER);
        refuses(page, 0x800, 2, 8, ERROR_INVALID_FLAGS);
        refuses(page, 0, 2, 1, ERROR_INSUFFICIENT_BUFFER);
        CHECK(ErrorOf(WideCharToMultiByte(page, 0, nullptr, 2, bytes, 8, nullptr, nullptr)) == ERROR_INVALID_PARAMETER);
        CHECK(ErrorOf(MultiByteToWideChar(page, 0, "ab", 2, nullptr, 8)) == ERROR_INVALID_PARAMETER);
    }
    refuses(99999, 0, 2, 8, ERROR_INVALID_PARAMETER);
}

TEST_CASE("a page is described by its character size and its lead bytes") {
    CPINFO info;
    for (const UINT page : {65001, 932, 1252}) {
        REQUIRE((IsValidCodePage(page) && GetCPInfo(page, &info)));
        CHECK(info.MaxCharSize == (page == 65001 ? 4 : page == 932 ? 2 : 1));
        CHECK(info.DefaultChar[0] == '?');
        CHECK(std::memcmp(info.LeadByte, page == 932 ? "\x81\x9F\xE0\xFC\0" : "\0", page == 932 ? 5 : 1) == 0);
    }
    CHECK(ErrorOf(GetCPInfo(99999, &info)) == ERROR_INVALID_PARAMETER);
    CHECK((!IsValidCodePage(99999) && !IsValidCodePage(CP_ACP) && IsValidCodePage(GetACP())));
    CHECK((IsDBCSLeadByteEx(932, 0x81) && !IsDBCSLeadByteEx(932, 0xB1) && !IsDBCSLeadByteEx(CP_UTF8, 0xE3)));
}

// The roads for long texts against those for single characters, at every length and so at every end of a vector.
TEST_CASE("a text of any length converts as its characters do one by one") {
    const std::u16string characters[] = {u"a",      u"~",      u"\u00E9", u"\u20AC", u"\u0416",    u"\uFF71",
                                         u"\u30BD", u"\u4E00", u"\u0E01", u"\uFFFF", u"\U0001F600"};
    std::mt19937 random(20);
    for (const UINT page : {65001u, 1252u, 932u}) {
        const DWORD flags = page == 65001 ? 0 : WC_NO_BEST_FIT_CHARS;
        for (std::size_t length = 1; length <= 130; ++length) {
            INFO(page, " ", length);
            // From ASCII alone to a mix, at another alignment each time.
            const std::size_t kinds = 1 + random() % std::size(characters);
            const std::size_t offset = random() % 8;
            Units text(offset, 'x'), back(offset, 'x');
            std::string bytes(offset, 'x');
            for (std::size_t i = 0; i < length; ++i) {
                const Units character = Wide(characters[random() % 4 == 0 ? random() % kinds : 0]);
                const std::string one = Encoded(page, character, flags);
                text += character;
                bytes += one;
                back += Decoded(page, one);
            }
            CHECK(Encoded(page, text, flags) == bytes);
            CHECK(Decoded(page, bytes) == back);
            std::string room(bytes.size() - 1, '\0');
            CHECK((room.empty() || ErrorOf(Encode(page, flags, text, room)) == ERROR_INSUFFICIENT_BUFFER));
        }
    }
}
