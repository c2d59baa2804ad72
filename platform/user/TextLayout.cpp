#include "platform/user/TextLayout.h"

#include <kelcore/platform/textdrawing.h>

#include <algorithm>

namespace kel::platform {
namespace {

constexpr std::size_t kDots = 3;

bool IsBlank(char32_t code) {
    return code == ' ' || code == '\t';
}

/// Ideographs, kana and full-width forms: lines may be broken at both of their sides.
bool IsFullWidth(char32_t code) {
    return (code >= 0x2E80 && code < 0xA000) || (code >= 0xAC00 && code < 0xD7A4) ||
           (code >= 0xF900 && code < 0xFB00) || (code >= 0xFF00 && code < 0xFF61) ||
           (code >= 0x20000 && code < 0x40000);
}

bool MayBreakBefore(const TextRun& run, std::size_t at, bool fullWidth) {
    const char32_t before = run[at - 1].code;
    return IsBlank(before) || (fullWidth && (IsFullWidth(before) || IsFullWidth(run[at].code)));
}

} // namespace

int LineRules::EndOf(int x, const TextCharacter& character) const {
    if (character.code == '\t' && format & DT_EXPANDTABS)
        return tabWidth > 0 ? (x / tabWidth + 1) * tabWidth : x;
    return x + font.AdvanceOf(character.code);
}

int LineRules::WidthOf(const TextRun& run, std::size_t count) const {
    int x = 0;
    for (std::size_t i = 0; i < count; ++i)
        x = EndOf(x, run[i]);
    return x;
}

std::size_t LineRules::Fitting(const TextRun& run, int most) const {
    int x = 0;
    for (std::size_t i = 0; i < run.size(); ++i) {
        x = EndOf(x, run[i]);
        if (x > most)
            return i;
    }
    return run.size();
}

bool LineBreaker::IsLineEnd(std::size_t at) const {
    return !Has(DT_SINGLELINE) && (m_text[at].code == '\r' || m_text[at].code == '\n');
}

bool LineBreaker::Breaks() const {
    return Has(DT_WORDBREAK) && !Has(DT_SINGLELINE) && m_rules.width >= 0;
}

void LineBreaker::TakeCharacter(TextLine& line) {
    const std::size_t start = m_at;
    if (m_text[m_at].code == '&' && !Has(DT_NOPREFIX) && m_at + 1 < m_text.size()) {
        ++m_at;
        if (m_text[m_at].code != '&')
            line.mark = line.shown.size();
        if (IsLineEnd(m_at))
            return;
    }
    line.shown.push_back(m_text[m_at]);
    line.from.push_back(m_at);
    m_starts.push_back(start);
    ++m_at;
}

// Of a text that is to be broken no more is looked at than it takes to see where.
void LineBreaker::Collect(TextLine& line) {
    m_starts.clear();
    bool canBreak = Has(DT_EDITCONTROL);
    while (!AtEnd() && !IsLineEnd(m_at)) {
        const std::size_t before = line.shown.size();
        TakeCharacter(line);
        if (line.shown.size() == before)
            continue;
        line.width = m_rules.EndOf(line.width, line.shown.back());
        canBreak = canBreak || IsBlank(line.shown.back().code);
        if (Breaks() && canBreak && line.width > m_rules.width && line.shown.size() > 1)
            return;
    }
}

// CR LF and LF CR are one end.
void LineBreaker::SkipLineEnd() {
    if (AtEnd() || !IsLineEnd(m_at))
        return;
    const char32_t first = m_text[m_at++].code;
    if (!AtEnd() && IsLineEnd(m_at) && m_text[m_at].code != first)
        ++m_at;
}

// A blank that does not fit goes with the break; one that does stays at the line's end, except where it would push the
// text from its place.
bool LineBreaker::Break(TextLine& line) {
    const std::size_t fitting = m_rules.Fitting(line.shown, m_rules.width);
    if (fitting == line.shown.size())
        return false;
    std::size_t keep = fitting;
    if (!IsBlank(line.shown[fitting].code)) {
        while (keep > 0 && !MayBreakBefore(line.shown, keep, !Has(DT_NOFULLWIDTHCHARBREAK)))
            --keep;
        if (keep == 0 && Has(DT_EDITCONTROL))
            keep = std::max<std::size_t>(1, fitting);
        else if (keep == 0)
            while (keep < line.shown.size() && !IsBlank(line.shown[keep].code))
                ++keep;
    }
    if (keep == line.shown.size())
        return false;
    const std::size_t next = keep + (keep >= fitting && IsBlank(line.shown[keep].code) ? 1 : 0);
    if (next < m_starts.size())
        m_at = m_starts[next];
    if (Has(DT_CENTER | DT_RIGHT) && keep > 0 && next == keep && IsBlank(line.shown[keep - 1].code))
        --keep;
    line.shown.resize(keep);
    line.from.resize(keep);
    line.width = m_rules.WidthOf(line.shown, keep);
    return true;
}

/// Replaces the characters from @p first up to @p rest by dots.
void LineBreaker::PutDots(TextLine& line, std::size_t first, std::size_t rest) const {
    const auto splice = [&](auto& items, const auto& dot) {
        items.erase(items.begin() + static_cast<std::ptrdiff_t>(first),
                    items.begin() + static_cast<std::ptrdiff_t>(rest));
        items.insert(items.begin() + static_cast<std::ptrdiff_t>(first), kDots, dot);
    };
    splice(line.shown, TextCharacter{'.', 1});
    splice(line.from, TextLine::kDot);
    if (line.IsMarked() && line.mark >= first)
        line.mark = line.mark < rest ? TextLine::kNone : line.mark - rest + first + kDots;
    line.width = m_rules.WidthOf(line.shown, line.shown.size());
    line.shortened = true;
}

void LineBreaker::Shorten(TextLine& line, bool last) const {
    const int dots = static_cast<int>(kDots) * m_rules.font.AdvanceOf('.');
    const auto isSlash = [](const TextCharacter& c) { return c.code == '\\'; };
    if (Has(DT_PATH_ELLIPSIS) && last && line.width > m_rules.width) {
        const auto slash = std::find_if(line.shown.rbegin(), line.shown.rend(), isSlash);
        if (slash != line.shown.rend()) {
            const TextRun tail(slash.base() - 1, line.shown.end());
            const std::size_t rest = line.shown.size() - tail.size();
            const int room = m_rules.width - dots - m_rules.WidthOf(tail, tail.size());
            PutDots(line, std::min(m_rules.Fitting(line.shown, room), rest), rest);
        } else {
            PutDots(line, m_rules.Fitting(line.shown, m_rules.width - dots), line.shown.size());
        }
    }
    if ((Has(DT_WORD_ELLIPSIS) || (Has(DT_END_ELLIPSIS) && last)) && line.width > m_rules.width)
        PutDots(line, m_rules.Fitting(line.shown, m_rules.width - dots), line.shown.size());
}

TextLine LineBreaker::Next(bool lowest) {
    TextLine line;
    Collect(line);
    if (!Breaks() || !Break(line))
        SkipLineEnd();
    Shorten(line, lowest || AtEnd());
    return line;
}

} // namespace kel::platform
