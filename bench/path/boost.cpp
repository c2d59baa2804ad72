#include "bench/path/Paths.h"

#include <boost/filesystem.hpp>

#include <utility>

namespace {

using namespace kel::bench;
using Path = boost::filesystem::path;

std::string Native(const Path& path) {
    return path.string();
}

template <class Handle>
Call Whole(Handle handle) {
    return ForEach(Converted([](const GivenPath& path) { return Path(path.whole); }), handle, Native);
}

template <class Handle>
Call Question(Handle handle) {
    return ForEach(Converted([](const GivenPath& path) { return Path(path.whole); }), handle, YesOrNo);
}

Call Parent() {
    return Whole([](const Path& path) { return path.parent_path(); });
}
Call Filename() {
    return Whole([](const Path& path) { return path.filename(); });
}
Call Extension() {
    return Whole([](const Path& path) { return path.extension(); });
}
Call Title() {
    return Whole([](const Path& path) { return path.stem(); });
}
Call CutExtension() {
    return Whole([](const Path& path) { return Path(path).replace_extension(); });
}
Call SwitchExtension() {
    return Whole([extension = Path(".new")](const Path& path) { return Path(path).replace_extension(extension); });
}
Call FullPath() {
    return Whole([](const Path& path) { return boost::filesystem::absolute(path).lexically_normal(); });
}
Call IsAbsolute() {
    return Question([](const Path& path) { return path.is_absolute(); });
}
Call IsRoot() {
    return Question([](const Path& path) { return path == path.root_path(); });
}
Call Join() {
    using Parts = std::pair<Path, Path>;
    return ForEach(
        Converted([](const GivenPath& path) { return Parts(path.folder, path.name); }),
        [](const Parts& parts) { return parts.first / parts.second; }, Native);
}

const Enter<PathFunction> entered[] = {
    Enter<PathFunction>({"boost", "parent", &Parent}),
    Enter<PathFunction>({"boost", "filename", &Filename}),
    Enter<PathFunction>({"boost", "extension", &Extension}),
    Enter<PathFunction>({"boost", "join", &Join}),
    Enter<PathFunction>({"boost", "title", &Title}),
    Enter<PathFunction>({"boost", "cut extension", &CutExtension}),
    Enter<PathFunction>({"boost", "switch extension", &SwitchExtension}),
    Enter<PathFunction>({"boost", "full path", &FullPath}),
    Enter<PathFunction>({"boost", "is absolute", &IsAbsolute}),
    Enter<PathFunction>({"boost", "is root", &IsRoot}),
};

} // namespace
