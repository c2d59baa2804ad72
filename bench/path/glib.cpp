#include "bench/path/Paths.h"

#include <glib.h>

namespace {

using namespace kel::bench;

struct Freer {
    void operator()(char* text) const { g_free(text); }
};
using Text = std::unique_ptr<char, Freer>;

std::string Bytes(const Text& text) {
    return text.get();
}

template <class Handle>
Call Whole(Handle handle) {
    return ForEach(Converted([](const GivenPath& path) { return path.whole; }), handle, Bytes);
}

Call Parent() {
    return Whole([](const std::string& path) { return Text(g_path_get_dirname(path.c_str())); });
}
Call Filename() {
    return Whole([](const std::string& path) { return Text(g_path_get_basename(path.c_str())); });
}
Call FullPath() {
    return Whole([](const std::string& path) { return Text(g_canonicalize_filename(path.c_str(), nullptr)); });
}
Call Join() {
    return ForEach(
        GivenPaths(),
        [](const GivenPath& path) {
            return Text(g_build_filename(path.folder.c_str(), path.name.c_str(), static_cast<char*>(nullptr)));
        },
        Bytes);
}

const Enter<PathFunction> entered[] = {
    Enter<PathFunction>({"glib", "parent", &Parent}),
    Enter<PathFunction>({"glib", "filename", &Filename}),
    Enter<PathFunction>({"glib", "join", &Join}),
    Enter<PathFunction>({"glib", "full path", &FullPath}),
};

} // namespace
