#include "Progress.h"

#include "Report.h"

#include <algorithm>
#include <cstdio>

namespace kelexamples {
namespace {

constexpr ULONGLONG kMillisecondsBetweenBars = 100;
constexpr unsigned kBarLength = 30;

bool IsTerminal() {
    return GetFileType(GetStdHandle(STD_ERROR_HANDLE)) == FILE_TYPE_CHAR;
}

std::string Bar(unsigned long long done, unsigned long long total) {
    const auto full = static_cast<std::size_t>(done * kBarLength / total);
    return '[' + std::string(full, '#') + std::string(kBarLength - full, '-') + ']';
}

} // namespace

Progress::Progress(const char* verb) : m_verb(verb), m_terminal(IsTerminal()) {}

Progress::~Progress() {
    Wipe();
}

void Progress::Reach(unsigned long long count) {
    m_done = count;
    if (m_terminal && GetTickCount64() - m_shownAt >= kMillisecondsBetweenBars)
        Show();
}

void Progress::Say(const std::string& line) {
    Wipe();
    std::fprintf(stderr, "%s\n", line.c_str());
}

void Progress::Show() {
    m_shownAt = GetTickCount64();
    const unsigned long long done = std::min(m_done, m_total);
    if (m_total == 0)
        std::fprintf(stderr, "\r%s: %-40s", m_verb, Bytes(m_done).c_str());
    else
        std::fprintf(stderr, "\r%s: %s %3llu %% of %-12s", m_verb, Bar(done, m_total).c_str(), done * 100 / m_total,
                     Bytes(m_total).c_str());
    std::fflush(stderr);
}

void Progress::Wipe() {
    if (m_shownAt != 0)
        std::fprintf(stderr, "\r%72s\r", "");
    m_shownAt = 0;
}

} // namespace kelexamples
