#include "bench/dir/TreeSize.h"

#include <filesystem>

namespace {

std::int64_t Add(const std::string& folder) {
    std::int64_t total = 0;
    for (const std::filesystem::directory_entry& entry : std::filesystem::recursive_directory_iterator(folder))
        if (entry.is_regular_file())
            total += static_cast<std::int64_t>(entry.file_size());
    return total;
}

const kel::bench::Enter<kel::bench::TreeSize> entered{{"std", &Add}};

} // namespace
