#include "bench/path/Paths.h"

#include <cstring>
#include <string_view>

namespace {

using namespace kel::bench;

// What no path library can do without: one search from the end, and a new string.
std::size_t LastOf(const std::string& path, char separator) {
    const void* const found = memrchr(path.data(), separator, path.size());
    return static_cast<std::size_t>(static_cast<const char*>(found) - path.data());
}

std::string Parent(const std::string& path) {
    return std::string(path.data(), LastOf(path, '/'));
}

std::string Filename(const std::string& path) {
    const std::size_t at = LastOf(path, '/') + 1;
    return std::string(path.data() + at, path.size() - at);
}

std::string Extension(const std::string& path) {
    const std::size_t at = LastOf(path, '.');
    return std::string(path.data() + at, path.size() - at);
}

std::string Joined(const GivenPath& path) {
    std::string joined;
    joined.reserve(path.folder.size() + 1 + path.name.size());
    joined += path.folder;
    joined += '/';
    joined += path.name;
    return joined;
}

std::string Same(const std::string& text) {
    return text;
}

template <std::string (*Function)(const std::string&)>
Call Whole() {
    return ForEach(Converted([](const GivenPath& path) { return path.whole; }), Function, Same);
}

Call Join() {
    return ForEach(GivenPaths(), Joined, Same);
}

const Enter<PathFunction> entered[] = {
    Enter<PathFunction>({"limit-memrchr&string", "parent", &Whole<Parent>}),
    Enter<PathFunction>({"limit-memrchr&string", "filename", &Whole<Filename>}),
    Enter<PathFunction>({"limit-memrchr&string", "extension", &Whole<Extension>}),
    Enter<PathFunction>({"limit-memrchr&string", "join", &Join}),
};

} // namespace
