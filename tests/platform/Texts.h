#pragma once

#include "Sheet.h"

/// The font file of the tests, added while it lives. The host's root is drive C: here and Z: on Wine.
class TestFont {
public:
    TestFont() {
        for (const char* drive : {"C:", "Z:"})
            if (!m_added) {
                m_file = drive + std::string(KELCORE_TEST_FONT);
                m_added = AddFontResourceExA(m_file.c_str(), FR_PRIVATE, nullptr) == 1;
            }
        REQUIRE(m_added);
    }
    TestFont(const TestFont&) = delete;
    TestFont& operator=(const TestFont&) = delete;
    // Wine keeps private fonts.
    ~TestFont() {
        const bool removed = RemoveFontResourceExA(m_file.c_str(), FR_PRIVATE, nullptr) != FALSE;
        CHECK((removed || !kel::test::FaultsAvailable()));
    }

    const std::string& File() const { return m_file; }

private:
    std::string m_file;
    bool m_added = false;
};

/// A description of the test font.
inline LOGFONTA TestFontOf(LONG height) {
    LOGFONTA font{};
    font.lfHeight = height;
    font.lfCharSet = DEFAULT_CHARSET;
    std::strcpy(font.lfFaceName, "Liberation Sans");
    return font;
}

/// A picture and a context with the test font, in which text and background are white on black: what is not black shows
/// where the cells of texts are.
class TextPage : TestFont, public Sheet {
public:
    explicit TextPage(LONG height = 16) : TextPage(TestFontOf(height)) {}
    explicit TextPage(const LOGFONTA& font) : Sheet(320, 160) {
        Use(CreateFontIndirectA(&font));
        SetTextColor(*this, kWhite);
        SetBkColor(*this, kWhite);
    }

    /// The smallest rectangle around what is not black, as text, and clears it.
    std::string Cells() const {
        const std::string box = Box();
        Clear();
        return box;
    }
};
