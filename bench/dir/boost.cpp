#include "bench/dir/TreeSize.h"

#include <boost/filesystem.hpp>

namespace {

std::int64_t Add(const std::string& folder) {
    std::int64_t total = 0;
    for (const boost::filesystem::directory_entry& entry : boost::filesystem::recursive_directory_iterator(folder))
        if (boost::filesystem::is_regular_file(entry.symlink_status()))
            total += static_cast<std::int64_t>(boost::filesystem::file_size(entry.path()));
    return total;
}

const kel::bench::Enter<kel::bench::TreeSize> entered{{"boost", &Add}};

} // namespace
