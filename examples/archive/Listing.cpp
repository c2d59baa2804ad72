#include "Listing.h"

#include "Reading.h"

#include <chrono>
#include <cstdio>

namespace kelarchive {
namespace {

std::string Time(const FILETIME& time) {
    // File times count 100 ns from 1601, 134,774 days before 1970.
    using Ticks = std::chrono::duration<long long, std::ratio<1, 10000000>>;
    const auto ticks = (static_cast<unsigned long long>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
    const auto minutes =
        std::chrono::floor<std::chrono::minutes>(Ticks(static_cast<long long>(ticks))) - std::chrono::days(134774);
    const auto day = std::chrono::floor<std::chrono::days>(minutes);
    const std::chrono::year_month_day date{std::chrono::sys_days(day)};
    const std::chrono::hh_mm_ss clock(minutes - day);
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u %02d:%02d", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()));
    return text;
}

std::string Attributes(unsigned bits) {
    std::string text = "----";
    if ((bits & FILE_ATTRIBUTE_DIRECTORY) != 0)
        text[0] = 'd';
    if ((bits & FILE_ATTRIBUTE_READONLY) != 0)
        text[1] = 'r';
    if ((bits & FILE_ATTRIBUTE_HIDDEN) != 0)
        text[2] = 'h';
    if ((bits & FILE_ATTRIBUTE_SYSTEM) != 0)
        text[3] = 's';
    return text;
}

void PrintLine(const Entry& entry, const std::string& size) {
    std::printf("%s %15s  %s  %s\n", Attributes(entry.attributes).c_str(), size.c_str(), Time(entry.written).c_str(),
                Shown(entry.Path()).c_str());
}

class Lister : public EntryVisitor {
public:
    void EnterFolder(const Folder& folder) override { PrintLine(folder, ""); }
    void EndBytes(Content& content) override { m_size = content.size; }
    void SameBytes(const Content& content) override { m_size = content.size; }
    void EndFile(const FileEntry& file) override { PrintLine(file, std::to_string(m_size)); }

private:
    unsigned long long m_size = 0;
};

class Verifier : public EntryVisitor {
public:
    void EndBytes(Content& content) override { m_bytes += content.size; }
    void SameBytes(const Content& content) override { m_bytes += content.size; }
    void EndFile(const FileEntry&) override { ++m_files; }

    void Summarise(const WideString& archive) const {
        std::printf("%s is sound: %s, %s\n", Shown(archive).c_str(), Counted(m_files, "file").c_str(),
                    kelexamples::Bytes(m_bytes).c_str());
    }

private:
    unsigned long long m_files = 0;
    unsigned long long m_bytes = 0;
};

} // namespace

void List(const WideString& archive) {
    Lister lister;
    ReadArchive(archive, "reading", lister);
}

void Verify(const WideString& archive) {
    Verifier verifier;
    ReadArchive(archive, "verifying", verifier);
    verifier.Summarise(archive);
}

} // namespace kelarchive
