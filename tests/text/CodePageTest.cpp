#include <doctest/doctest.h>
#include <kelcore/platform.h>
#include <kelcore/text.h>

#include <random>

namespace {

WideString Wide(const std::u16string& text) {
    return {text.begin(), text.end()};
}

} // namespace

TEST_CASE("texts convert up to their first NUL") {
    CHECK(StdW2A({}).empty());
    CHECK(StdA2W({}).empty());
    CHECK(StdW2A(Wide(std::u16string(u"ab\0cd", 5))) == "ab");
    CHECK(StdA2W(std::string("ab\0cd", 5)) == Wide(u"ab"));
    CHECK(StdW2A(WideString(3, 0)).empty());
    CHECK(StdA2W(std::string(3, '\0')).empty());
    for (const std::size_t length : {511u, 512u, 513u, 16384u, 16385u, 70000u}) {
        CAPTURE(length);
        for (const std::size_t nul : {std::size_t{0}, length / 2, length - 1}) {
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
    struct Row {
        UINT page;
        std::u16string text;
        std::string bytes;
    };
    const Row rows[] = {
        {65001, u"\u00E9\u4E00\U0001F600", "\xC3\xA9\xE4\xB8\x80\xF0\x9F\x98\x80"},
        {1252, u"\u20AC\u00E9", "\x80\xE9"},
        {932, u"\u4E00\uFF71\u30BD", "\x88\xEA\xB1\x83\x5C"},
    };
    bool known = false;
    for (const Row& row : rows) {
        if (row.page != GetACP())
            continue;
        known = true;
        CHECK(StdW2A(Wide(row.text)) == row.bytes);
        CHECK(StdA2W(row.bytes) == Wide(row.text));
    }
    CHECK(known);
    const std::string lone = StdW2A(Wide({u'a', 0xD800, u'b'}));
    CHECK(lone == (GetACP() == CP_UTF8 ? "a\xEF\xBF\xBD"
                                         "b"
                                       : "a?b"));
}

TEST_CASE("a long text converts as the platform converts it at once, and comes back") {
    std::mt19937 random(11);
    const std::u16string scripts[] = {u"ab c", u"\u00E9\u00FC", u"\u4E00\u30BD", u"\U0001F600\U0001F601"};
    for (const std::size_t length : {400u, 600u, 5000u, 16383u, 16384u, 16385u, 40000u, 100000u}) {
        // Runs from a few units to more than a piece, so that pieces end within pairs and sequences.
        for (const std::size_t run : {1u, 30u, 20000u}) {
            CAPTURE(length);
            CAPTURE(run);
            WideString text;
            while (text.size() < length) {
                const std::u16string& script = scripts[random() % 4];
                for (std::size_t i = 1 + random() % run; i > 0; --i)
                    text.insert(text.end(), script.begin(), script.end());
            }
            text.resize(length);
            const auto* units = reinterpret_cast<const WCHAR*>(text.data());
            const int size =
                WideCharToMultiByte(CP_ACP, 0, units, static_cast<int>(length), nullptr, 0, nullptr, nullptr);
            NarrowString bytes(static_cast<std::size_t>(size), '\0');
            WideCharToMultiByte(CP_ACP, 0, units, static_cast<int>(length), bytes.data(), size, nullptr, nullptr);
            const NarrowString narrow = StdW2A(text);
            CHECK(narrow == bytes);

            const int back = MultiByteToWideChar(CP_ACP, 0, bytes.data(), size, nullptr, 0);
            WideString wide(static_cast<std::size_t>(back), 0);
            MultiByteToWideChar(CP_ACP, 0, bytes.data(), size, reinterpret_cast<WCHAR*>(wide.data()), back);
            CHECK(StdA2W(narrow) == wide);
        }
    }
}
