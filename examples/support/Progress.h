#pragma once

#include <kelcore/platform.h>

#include <string>

namespace kelexamples {

/// A bar on the terminal that tells how far a command is; there is none when standard error is no terminal.
class Progress {
public:
    /// @param verb what is being done, such as "packing".
    explicit Progress(const char* verb);
    /// Wipes the bar.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Sets the number of bytes that make the whole.
    void Expect(unsigned long long total) { m_total = total; }
    /// Tells that @p count more bytes are done.
    void Add(unsigned long long count) { Reach(m_done + count); }
    /// Tells that the first @p count bytes are done.
    void Reach(unsigned long long count);
    /// Writes a line to standard error, above the bar.
    void Say(const std::string& line);

private:
    void Show();
    void Wipe();

    const char* m_verb;
    bool m_terminal;
    unsigned long long m_total = 0;
    unsigned long long m_done = 0;
    ULONGLONG m_shownAt = 0;
};

} // namespace kelexamples
