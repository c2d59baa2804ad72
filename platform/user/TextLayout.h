#pragma once

/// @file
/// How DrawTextA breaks a text into lines and shortens them. Widths are in pixels.

#include "platform/gdi/text/ContextFont.h"

namespace kel::platform {

/// One line as it is shown.
struct TextLine {
    static constexpr std::size_t kDot = static_cast<std::size_t>(-1); ///< stands for no part of the text
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    TextRun shown;
    std::vector<std::size_t> from; ///< where in the text's run each character stands, or kDot
    std::size_t mark = kNone;      ///< the character to be underlined
    int width = 0;
    bool shortened = false;

    /// Whether a character that is shown is to be underlined.
    bool IsMarked() const { return mark < shown.size(); }
};

/// What a format asks for, and what it needs to know of the font.
struct LineRules {
    const ContextFont& font;
    UINT format;
    int width;    ///< that there is
    int tabWidth; ///< with DT_EXPANDTABS

    /// Where a character ends that begins @p x pixels from the line's beginning.
    int EndOf(int x, const TextCharacter& character) const;

    /// The width of @p count characters from the line's beginning.
    int WidthOf(const TextRun& run, std::size_t count) const;

    /// How many characters from the line's beginning are not wider than @p most.
    std::size_t Fitting(const TextRun& run, int most) const;
};

/// Gives the lines of a text one by one.
class LineBreaker {
public:
    LineBreaker(const LineRules& rules, const TextRun& text) : m_rules(rules), m_text(text) {}

    bool AtEnd() const { return m_at >= m_text.size(); }

    /// @param lowest nothing is shown below this line. @throws std::bad_alloc
    TextLine Next(bool lowest);

private:
    bool Has(UINT flag) const { return (m_rules.format & flag) != 0; }
    bool IsLineEnd(std::size_t at) const;
    bool Breaks() const;
    void Collect(TextLine& line);
    void TakeCharacter(TextLine& line);
    void SkipLineEnd();
    bool Break(TextLine& line);
    void Shorten(TextLine& line, bool last) const;
    void PutDots(TextLine& line, std::size_t first, std::size_t rest) const;

    const LineRules& m_rules;
    const TextRun& m_text;
    std::size_t m_at = 0;
    std::vector<std::size_t> m_starts; // where in the text the characters of the line begin, with the prefix
};

} // namespace kel::platform
