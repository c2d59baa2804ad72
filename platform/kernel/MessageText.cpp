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
    if (Breaks() && m_column >= m_width && (m_break != kNowhere || !m_isInsert))
        BreakLine();
    Append(bytes, length);
    ++m_column;
    ++m_word;
    m_hasWord = true;
}

// Spaces past the width hang over: they go when a word follows them.
void MessageText::PutSpace() {
    Append(" ", 1);
    ++m_column;
    m_word = 0;
    if (m_hasWord)
        m_break = m_text.size();
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
    m_hasWord = false;
    m_break = kNowhere;
}

// The word begun moves to the next line; one that fills the line by itself is cut.
void MessageText::BreakLine() {
    const unsigned moved = m_break == kNowhere ? 0 : m_word;
    const std::size_t end = m_break == kNowhere ? m_text.size() : m_break;
    std::size_t first = end;
    while (m_break != kNowhere && first != 0 && m_text[first - 1] == ' ')
        --first;
    m_text.replace(first, end - first, "\r\n");
    m_over = m_over || m_text.size() > kLargest;
    StartLine();
    m_column = moved;
    m_word = moved;
    m_hasWord = moved != 0;
}

} // namespace kel::platform
