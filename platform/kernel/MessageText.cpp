#include "platform/kernel/MessageText.h"

#include "platform/crt/FormatText.h"

#include <algorithm>

namespace kel::platform {

void MessageText::Append(const char* text, std::size_t length) {
    if (m_over || length > kLargest - m_text.size())
        m_over = true;
    else
        m_text.append(text, length);
}

void MessageText::Put(const char* text, std::size_t length) {
    if (Breaks())
        PutBroken(text, length);
    else
        Append(text, length);
}

void MessageText::Fill(char character, std::int64_t count) {
    if (count > static_cast<std::int64_t>(kLargest)) {
        m_over = true;
        return;
    }
    const std::string run(static_cast<std::size_t>(count), character);
    Put(run.data(), run.size());
}

void MessageText::PutBroken(const char* text, std::size_t length) {
    for (std::size_t at = 0; at < length && !m_over;) {
        const std::size_t size = std::min(CharacterLength(text + at, length - at), length - at);
        if (text[at] == ' ' && !m_isInsert)
            PutSpace();
        else
            PutCharacter(text + at, size);
        at += size;
    }
}

void MessageText::PutCharacter(const char* bytes, std::size_t length) {
    if (*bytes == '\r' || *bytes == '\n') {
        Append(bytes, length);
        StartLine();
        return;
    }
    if (Breaks() && m_column >= m_width && (m_breakBegin != kNowhere || !m_isInsert))
        BreakLine();
    Append(bytes, length);
    ++m_column;
    ++m_word;
}

// Spaces past the width hang over: they go when a word follows them. Those at the front of a line are no place to
// break.
void MessageText::PutSpace() {
    if (m_word != 0)
        m_breakBegin = m_text.size();
    Append(" ", 1);
    if (m_breakBegin != kNowhere)
        m_breakEnd = m_text.size();
    ++m_column;
    m_word = 0;
}

void MessageText::PutSourceBreak() {
    if (m_width == 0)
        PutHardBreak();
    else
        PutSpace();
}

void MessageText::PutHardBreak() {
    Append("\r\n", 2);
    StartLine();
}

void MessageText::StartLine() {
    m_column = 0;
    m_word = 0;
    m_breakBegin = kNowhere;
}

// The word begun moves to the next line; one that fills the line by itself is cut.
void MessageText::BreakLine() {
    if (m_breakBegin == kNowhere) {
        PutHardBreak();
        return;
    }
    const unsigned moved = m_word;
    m_text.replace(m_breakBegin, m_breakEnd - m_breakBegin, "\r\n");
    m_over = m_over || m_text.size() > kLargest;
    StartLine();
    m_column = moved;
    m_word = moved;
}

} // namespace kel::platform
