#include "Progress.h"

#include "Report.h"

#include <cstdio>

namespace kelarchive {
namespace {

constexpr ULONGLONG kMillisecondsBetweenLines = 100;

bool IsTerminal() {
    return GetFileType(GetStdHandle(STD_ERROR_HANDLE)) == FILE_TYPE_CHAR;
}

} // namespace

Progress::Progress(const char* verb) : m_verb(verb), m_terminal(IsTerminal()) {}

Progress::~Progress() {
    if (m_shownAt != 0)
        std::fprintf(stderr, "\r%60s\r", "");
}

void Progress::Add(unsigned long long count) {
    m_done += count;
    if (m_terminal && GetTickCount64() - m_shownAt >= kMillisecondsBetweenLines)
        Show();
}

void Progress::Show() {
    m_shownAt = GetTickCount64();
    const std::string done = Bytes(m_done);
    if (m_total == 0)
        std::fprintf(stderr, "\r%s: %-40s", m_verb, done.c_str());
    else
        std::fprintf(stderr, "\r%s: %3llu %% of %-30s", m_verb, m_done * 100 / m_total, Bytes(m_total).c_str());
    std::fflush(stderr);
}

} // namespace kelarchive
