#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace kel::platform {

/// The text of a message while it is put together, its lines broken to a width; an output of printf conversions.
class MessageText {
public:
    using Unit = char;

    /// Bytes of the longest message.
    static constexpr std::size_t kLargest = 65535;
    /// The width that turns line breaks into spaces and makes none.
    static constexpr unsigned kEndless = 255;

    /// @param width characters of a line; 0 keeps line breaks.
    explicit MessageText(unsigned width) : m_width(width) {}

    /// Appends text as it is; with a width, lines may be broken at its spaces.
    void Put(const char* text, std::size_t length);
    void PutAscii(const char* text, std::size_t length) { Put(text, length); }
    void Fill(char character, std::int64_t count);

    /// Between the two, appended text is an insert, which is never broken.
    void BeginInsert() { m_isInsert = true; }
    void EndInsert() { m_isInsert = false; }

    /// Appends a character at which no line is broken.
    void PutGlue(char character) { PutCharacter(&character, 1); }
    /// Appends what a line break of the source becomes.
    void PutSourceBreak();
    /// Ends the line.
    void PutHardBreak();

    /// Whether the text has grown beyond the longest message; what it then holds is unspecified.
    [[nodiscard]] bool IsOver() const { return m_over; }
    [[nodiscard]] const std::string& Text() const { return m_text; }

private:
    static constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

    [[nodiscard]] bool Breaks() const { return m_width != 0 && m_width != kEndless; }
    void Append(const char* text, std::size_t length);
    void PutBroken(const char* text, std::size_t length);
    void PutCharacter(const char* bytes, std::size_t length);
    void PutSpace();
    void StartLine();
    void BreakLine();

    std::string m_text;
    unsigned m_width;
    bool m_over = false;
    bool m_isInsert = false;
    unsigned m_column = 0;               // characters of the line
    unsigned m_word = 0;                 // characters behind its last space
    std::size_t m_breakBegin = kNowhere; // its last spaces that have a word before them
    std::size_t m_breakEnd = kNowhere;
};

} // namespace kel::platform
