#include "bench/dir/TreeSize.h"

#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// The system calls and nothing else.
std::int64_t AddFolder(int folder);

std::int64_t AddEntry(int folder, const dirent64& entry) {
    if (std::strcmp(entry.d_name, ".") == 0 || std::strcmp(entry.d_name, "..") == 0)
        return 0;
    if (entry.d_type == DT_DIR)
        return AddFolder(openat(folder, entry.d_name, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    struct stat facts;
    return fstatat(folder, entry.d_name, &facts, AT_SYMLINK_NOFOLLOW) == 0 ? facts.st_size : 0;
}

std::int64_t AddFolder(int folder) {
    alignas(dirent64) char entries[32 << 10];
    std::int64_t total = 0;
    for (ssize_t got; (got = getdents64(folder, entries, sizeof entries)) > 0;) {
        for (ssize_t at = 0; at < got;) {
            const auto* const entry = reinterpret_cast<const dirent64*>(entries + at);
            total += AddEntry(folder, *entry);
            at += entry->d_reclen;
        }
    }
    close(folder);
    return total;
}

std::int64_t Add(const std::string& folder) {
    return AddFolder(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

const kel::bench::Enter<kel::bench::TreeSize> entered{{"limit-getdents64&fstatat", &Add}};

} // namespace
