#pragma once

#include "Drawing.h"

#include <cstdint>
#include <string>

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

/// A picture of 32 bits a pixel and a context with the test font, in which text and background are white on black: what
/// is not black shows where the cells of texts are.
class TextPage {
public:
    static constexpr int kWidth = 320;
    static constexpr int kHeight = 160;

    explicit TextPage(LONG height = 16) : TextPage(TestFontOf(height)) {}
    explicit TextPage(const LOGFONTA& font)
        : m_section(kWidth, kHeight, 32), m_context(m_section.handle), m_font(CreateFontIndirectA(&font)) {
        m_before = SelectObject(m_context, m_font);
        SetTextColor(m_context, RGB(255, 255, 255));
        SetBkColor(m_context, RGB(255, 255, 255));
    }
    TextPage(const TextPage&) = delete;
    TextPage& operator=(const TextPage&) = delete;
    ~TextPage() {
        SelectObject(m_context, m_before);
        DeleteObject(m_font);
    }

    operator HDC() const { return m_context; }
    void Clear() { std::memset(m_section.bytes, 0, 4 * kWidth * kHeight); }

    /// The smallest rectangle around what is not black, as text, and clears it.
    std::string Cells() {
        RECT box{0, 0, 0, 0};
        const auto* pixels = reinterpret_cast<const std::uint32_t*>(m_section.bytes);
        for (LONG i = 0; i < kWidth * kHeight; ++i)
            if (pixels[i] != 0) {
                const LONG x = i % kWidth;
                const LONG y = kHeight - 1 - i / kWidth;
                const RECT pixel{x, y, x + 1, y + 1};
                UnionRect(&box, &box, &pixel);
            }
        Clear();
        return box.right == 0 ? "none" : TextOf(box);
    }

    static std::string TextOf(const RECT& box) {
        return std::to_string(box.left) + " " + std::to_string(box.top) + " " + std::to_string(box.right) + " " +
               std::to_string(box.bottom);
    }

private:
    const TestFont m_file;
    Section m_section;
    MemoryContext m_context;
    HFONT m_font;
    HGDIOBJ m_before;
};
