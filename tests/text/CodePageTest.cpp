#include "tests/support/Text.h"

#include <kelcore/platform.h>

#include <random>

TEST_CASE("texts convert up to their first NUL") {
    CHECK(StdW2A(u"ab\0cd"_w) == "ab");
    CHECK(StdA2W(std::string("ab\0cd", 5)) == u"ab"_w);
    for (const std::size_t length : {1u, 511u, 512u, 513u, 16384u, 16385u, 70000u})
        for (const std::size_t nul : {std::size_t{0}, length / 2, length - 1}) {
            INFO(length, " ", nul);
            WideString wide(length, 'w');
            wide[nul] = 0;
            CHECK(StdW2A(wide) == std::string(nul, 'w'));
            std::string narrow(length, 'n');
            narrow[nul] = '\0';
            CHECK(StdA2W(narrow) == WideString(nul, 'n'));
        }
}

// The page is the system's own on Windows, and what KELCORE_ACP says elsewhere: the test runs with several.
TEST_CASE("a text of the process's code page converts as the platform converts it at once, and comes back") {
    std::mt19937 random(11);
    const WideString scripts[] = {u"ab c"_w,
                                  u"\u00E9\u20AC"_w,
                                  u"\u4E00\u30BD\uFF71"_w,
                                  u"\U0001F600\U0001F601"_w,
                                  {0xD800, 'x'}}; // the last with a lone surrogate
    for (const int length : {1, 2, 7, 400, 600, 5000, 16383, 16384, 16385, 100000})
        // Runs from a few units to more than a piece, so that pieces end within pairs and sequences.
        for (const std::size_t run : {1u, 30u, 20000u}) {
            INFO(length, " ", run);
            WideString text;
            while (text.size() < static_cast<std::size_t>(length)) {
                const WideString& script = scripts[random() % std::size(scripts)];
                for (std::size_t i = 1 + random() % run; i > 0; --i)
                    text += script;
            }
            text.resize(static_cast<std::size_t>(length));
            NarrowString bytes(text.size() * 4, '\0');
            const int size = WideCharToMultiByte(GetACP(), 0, reinterpret_cast<const WCHAR*>(text.data()), length,
                                                 bytes.data(), 4 * length, nullptr, nullptr);
            bytes.resize(static_cast<std::size_t>(size));
            CHECK(StdW2A(text) == bytes);
            WideString wide(bytes.size(), 0);
            const int back =
                MultiByteToWideChar(GetACP(), 0, bytes.data(), size, reinterpret_cast<WCHAR*>(wide.data()), size);
            wide.resize(static_cast<std::size_t>(back));
            CHECK(StdA2W(bytes) == wide);
        }
}
