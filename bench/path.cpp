#include "bench/path/Paths.h"
#include "bench/support/Areas.h"
#include "bench/support/Random.h"

#include <kelcore/file.h>

#include <utility>

namespace kel::bench {
namespace {

// A path of the host as the library knows it: on drive C:, with backslashes.
WideString Wide(const std::string& text) {
    WideString wide;
    for (const char unit : text)
        wide += unit == '/' ? static_cast<unsigned short>('\\') : static_cast<unsigned char>(unit);
    return wide;
}

WideString OnDrive(const std::string& path) {
    return Wide("C:") + Wide(path);
}

std::string HostForm(const WideString& path) {
    std::string text;
    for (const unsigned short unit : path)
        text += unit == '\\' ? '/' : static_cast<char>(unit);
    return text.rfind("C:", 0) == 0 ? text.substr(2) : text;
}

template <class Handle>
Call Whole(Handle handle) {
    return ForEach(Converted([](const GivenPath& path) { return OnDrive(path.whole); }), handle, HostForm);
}

template <class Handle>
Call Question(Handle handle) {
    return ForEach(Converted([](const GivenPath& path) { return OnDrive(path.whole); }), handle, YesOrNo);
}

Call Parent() {
    return Whole([](const WideString& path) { return File::GetDirname(path); });
}
Call Filename() {
    return Whole([none = WideString()](const WideString& path) { return File::GetBasename(path, none); });
}
Call Extension() {
    return Whole([](const WideString& path) { return File::GetFileExtension(path); });
}
Call Title() {
    return Whole([](const WideString& path) { return File::GetFileTitleA(path); });
}
Call CutExtension() {
    return Whole([none = WideString()](const WideString& path) { return File::CutExtension(path, none); });
}
Call SwitchExtension() {
    return Whole([extension = Wide(".new")](const WideString& path) { return File::SwitchExtension(path, extension); });
}
Call FullPath() {
    return Whole([](const WideString& path) { return File::GetFullPath(path); });
}
Call IsAbsolute() {
    return Question([](const WideString& path) { return File::IsPathAbsolute(path); });
}
Call IsRoot() {
    return Question([](const WideString& path) { return File::IsDriveRoot(path); });
}
Call Join() {
    using Parts = std::pair<WideString, WideString>;
    return ForEach(
        Converted([](const GivenPath& path) { return Parts(OnDrive(path.folder), Wide(path.name)); }),
        [](const Parts& parts) { return File::MakePath(parts.first, parts.second); }, HostForm);
}

const Enter<PathFunction> entered[] = {
    Enter<PathFunction>({"kelcore", "parent", &Parent}),
    Enter<PathFunction>({"kelcore", "filename", &Filename}),
    Enter<PathFunction>({"kelcore", "extension", &Extension}),
    Enter<PathFunction>({"kelcore", "join", &Join}),
    Enter<PathFunction>({"kelcore", "title", &Title}),
    Enter<PathFunction>({"kelcore", "cut extension", &CutExtension}),
    Enter<PathFunction>({"kelcore", "switch extension", &SwitchExtension}),
    Enter<PathFunction>({"kelcore", "full path", &FullPath}),
    Enter<PathFunction>({"kelcore", "is absolute", &IsAbsolute}),
    Enter<PathFunction>({"kelcore", "is root", &IsRoot}),
};

GivenPath MakeGivenPath(Random& random) {
    static constexpr const char* kExtensions[] = {".txt", ".c", ".jpeg", ".html"};
    GivenPath path;
    for (std::uint32_t folders = 2 + random.Below(5); folders > 0; --folders)
        path.folder += '/' + random.Letters(3 + random.Below(10));
    path.name = random.Letters(4 + random.Below(12)) + kExtensions[random.Below(4)];
    path.whole = path.folder + '/' + path.name;
    return path;
}

} // namespace

const std::vector<GivenPath>& GivenPaths() {
    static const std::vector<GivenPath> paths = [] {
        Random random(5);
        std::vector<GivenPath> made;
        for (int i = 0; i < 1000; ++i)
            made.push_back(MakeGivenPath(random));
        return made;
    }();
    return paths;
}

void AddPathJobs() {
    for (const PathFunction& function : Contenders<PathFunction>())
        AddJob("path", function.who, function.work, function.make);
}

} // namespace kel::bench
