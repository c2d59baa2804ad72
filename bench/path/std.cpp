#include "bench/path/Paths.h"

#include <filesystem>

#include <utility>

namespace {

using namespace kel::bench;
using Path = std::filesystem::path;

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
    return Whole([](const Path& path) { return std::filesystem::absolute(path).lexically_normal(); });
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
    Enter<PathFunction>({"std", "parent", &Parent}),
    Enter<PathFunction>({"std", "filename", &Filename}),
    Enter<PathFunction>({"std", "extension", &Extension}),
    Enter<PathFunction>({"std", "join", &Join}),
    Enter<PathFunction>({"std", "title", &Title}),
    Enter<PathFunction>({"std", "cut extension", &CutExtension}),
    Enter<PathFunction>({"std", "switch extension", &SwitchExtension}),
    Enter<PathFunction>({"std", "full path", &FullPath}),
    Enter<PathFunction>({"std", "is absolute", &IsAbsolute}),
    Enter<PathFunction>({"std", "is root", &IsRoot}),
};

} // namespace
