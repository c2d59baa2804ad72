#include "platform/kernel/Wildcards.h"

#include "platform/kernel/HostText.h"

#include <vector>

namespace kel::platform {
namespace {

constexpr char16_t kAny = u'*';
constexpr char16_t kOne = u'?';
constexpr char16_t kDosAny = u'<'; // any characters, but not the name's last dot
constexpr char16_t kDosOne = u'>'; // one character but no dot; nothing at the end or before a dot
constexpr char16_t kDosDot = u'"'; // a dot; nothing at the end

// Names cannot end in dots and spaces, so patterns need not either; the dot of "*." has a meaning of its own.
std::u16string DropPatternEnd(std::u16string pattern) {
    const bool dot = pattern.back() == u'.';
    pattern.erase(pattern.find_last_not_of(u" .") + 1);
    if (dot && !pattern.empty() && pattern.back() == kAny)
        pattern.back() = kDosAny;
    return pattern;
}

// The rewriting that a search does before it compares, by the characters on either side of a wildcard.
std::u16string UseDosForms(std::u16string pattern) {
    if (pattern == u"*.*")
        return u"*";
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const bool wildcard = pattern[i] == kOne || pattern[i] == kAny;
        if (i != 0 && pattern[i] == u'.' && pattern[i - 1] == kAny)
            pattern[i - 1] = kDosAny;
        if (i != 0 && wildcard && pattern[i - 1] == u'.')
            pattern[i - 1] = kDosDot;
        if (pattern[i] == kOne)
            pattern[i] = kDosOne;
    }
    return pattern;
}

// The places of the expression that a name's beginning may have led to, all at once: no pattern takes more than
// expression times name steps.
class Places {
public:
    explicit Places(const std::u16string& expression) : m_expression(expression), m_at(expression.size() + 1) {
        m_at[0] = true;
    }

    // Steps over what may match nothing before @p next (NUL: the end of the name).
    void Skip(char16_t next) {
        for (std::size_t i = 0; i < m_expression.size(); ++i)
            if (m_at[i] && MayBeNothing(m_expression[i], next))
                m_at[i + 1] = true;
    }

    void Take(char16_t unit, bool lastDot) {
        for (std::size_t i = m_expression.size() + 1; i-- > 0;) {
            const bool stays = i < m_expression.size() && m_at[i] && Repeats(m_expression[i], lastDot);
            m_at[i] = stays || (i > 0 && m_at[i - 1] && Equals(m_expression[i - 1], unit));
        }
    }

    bool AtEnd() const { return m_at.back(); }

private:
    static bool MayBeNothing(char16_t c, char16_t next) {
        return c == kAny || c == kDosAny || (c == kDosOne && (next == 0 || next == u'.')) ||
               (c == kDosDot && next == 0);
    }
    static bool Repeats(char16_t c, bool lastDot) { return c == kAny || (c == kDosAny && !lastDot); }
    static bool Equals(char16_t c, char16_t unit) {
        return c == unit || (c == kDosOne && unit != u'.') || (c == kDosDot && unit == u'.');
    }

    const std::u16string& m_expression;
    std::vector<bool> m_at;
};

} // namespace

bool NamePattern::HasWildcards(std::string_view name) {
    return name.find_first_of("*?<>\"") != std::string_view::npos;
}

NamePattern::NamePattern(std::string_view pattern) : m_expression(UseDosForms(DropPatternEnd(FoldName(pattern)))) {}

bool NamePattern::Matches(std::string_view name) const {
    if (m_expression == u"*")
        return true;
    const std::u16string folded = FoldName(name);
    const std::size_t lastDot = folded.rfind(u'.');
    Places places(m_expression);
    for (std::size_t i = 0; i < folded.size(); ++i) {
        places.Skip(folded[i]);
        places.Take(folded[i], i == lastDot);
    }
    places.Skip(0);
    return places.AtEnd();
}

// Both or none, and with names that have no extension: what happens to match a single dot does not mean them.
bool NamePattern::MatchesDots() const {
    return m_expression == std::u16string(1, kDosAny) || (Matches(".") && Matches(".."));
}

} // namespace kel::platform
