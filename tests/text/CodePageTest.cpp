#include "tests/support/Text.h"

#include <kelcore/platform.h>

#include <random>

TEST_CASE("texts convert up to their first NUL") {
    CHECK(StdW2A(u"ab\0cd"_w) == "ab");
    CHECK(StdA2W(std::string("ab\0cd", 5)) == u"ab"_w);
    for (const std::size_t length : {1u, 511u, 512u, 513u, 16384u, 16385u, 70000u}) {
        for (const std::size_t nul : {std::size_t{0}, length / 2, length - 1}) {
            CAPTURE(length);
            CAPTURE(nul);
            WideString wide(length, 'w');
            wide[nul] = 0;
            CHECK(StdW2A(wide) == std::string(nul, 'w'));
            std::string narrow(length, 'n');
            narrow[nul] = '\0';
            CHECK(StdA2W(narrow) == WideString(nul, 'n'));
        }
    }
}

// The page is the system's own on Windows, and what KELCORE_ACP says elsewhere: the test runs with several.
TEST_CASE("characters of the process's code page convert both ways") {
    const struct {
        UINT page;
        WideString text;
        std::string bytes, lone; // lone: what "a", a lone surrogate and "b" become
    } rows[] = {
        {65001, u"\u00E9\u4E00\U0001F600"_w, "\xC3\xA9\xE4\xB8\x80\xF0\x9F\x98\x80", "a\xEF\xBF\xBD\x62"},
        {1252, u"\u20AC\u00E9"_w, "\x80\xE9", "a?b"},
        {932, u"\u4E00\uFF71\u30BD"_w, "\x88\xEA\xB1\x83\x5C", "a?b"},
    };
    bool known = false;
    for (const auto& row : rows) {
        if (row.page != GetACP())
            continue;
        known = true;
        CHECK(StdW2A(row.text) == row.bytes);
        CHECK(StdA2W(row.bytes) == row.text);
        CHECK(StdW2A({'a', 0xD800, 'b'}) == row.lone);
    }
    CHECK(known);
}

TEST_CASE("a long text converts as the platform converts it at once, and comes back") {
    std::mt19937 random(11);
    const WideString scripts[] = {u"ab c"_w, u"\u00E9\u00FC"_w, u"\u4E00\u30BD"_w, u"\U0001F600\U0001F601"_w};
    for (const int length : {400, 600, 5000, 16383, 16384, 16385, 100000}) {
        // Runs from a few units to more than a piece, so that pieces end within pairs and sequences.
        for (const std::size_t run : {1u, 30u, 20000u}) {
            CAPTURE(length);
            CAPTURE(run);
            WideString text;
            while (text.size() < static_cast<std::size_t>(length)) {
                const WideString& script = scripts[random() % 4];
                for (std::size_t i = 1 + random() % run; i > 0; --i)
                    text += script;
            }
            text.resize(static_cast<std::size_t>(length));
            NarrowString bytes(text.size() * 4, '\0');
            const int size = WideCharToMultiByte(CP_ACP, 0, reinterpret_cast<const WCHAR*>(text.data()), length,
                                                 bytes.data(), 4 * length, nullptr, nullptr);
            bytes.resize(static_cast<std::size_t>(size));
            CHECK(StdW2A(text) == bytes);
            WideString wide(bytes.size(), 0);
            const int back =
                MultiByteToWideChar(CP_ACP, 0, bytes.data(), size, reinterpret_cast<WCHAR*>(wide.data()), size);
            wide.resize(static_cast<std::size_t>(back));
            CHECK(StdA2W(bytes) == wide);
        }
    }
}
