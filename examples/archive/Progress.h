#pragma once

#include <kelcore/platform.h>

#include <string>

namespace kelarchive {

/// A line on the terminal that tells how far a command is; silent when standard error is no terminal.
class Progress {
public:
    /// @param verb what is being done, such as "packing".
    explicit Progress(const char* verb);
    /// Wipes the line.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Sets the number of bytes that make the whole.
    void Expect(unsigned long long total) { m_total = total; }
    /// Tells that @p count more bytes are done.
    void Add(unsigned long long count);

private:
    void Show();

    const char* m_verb;
    bool m_terminal;
    unsigned long long m_total = 0;
    unsigned long long m_done = 0;
    ULONGLONG m_shownAt = 0;
};

} // namespace kelarchive
