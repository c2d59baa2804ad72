#include "Commands.h"
#include "Contents.h"
#include "Names.h"
#include "PngFile.h"
#include "WholeFile.h"

#include <kelcore/file.h>

#include <cstdio>
#include <map>

namespace kelalbum {
namespace {

/// The files that each picture is to be written to, by the picture's number.
using Files = std::multimap<int, WideString>;

std::vector<Listed> Selected(const std::vector<Listed>& contents, const std::vector<WideString>& names) {
    if (names.empty())
        return contents;
    std::vector<Listed> selected;
    selected.reserve(names.size());
    for (const WideString& name : names)
        selected.push_back(Find(contents, name));
    return selected;
}

Files FilesFor(const std::vector<Listed>& entries, const WideString& folder) {
    GivenNames names;
    Files files;
    for (const Listed& entry : entries)
        files.emplace(entry.number, File::MakePath(folder, names.Give(File::GetFileTitleA(entry.name) + u".png"_w)));
    return files;
}

void MakeFolder(const WideString& folder) {
    if (!File::FileExists(folder) && !CreateDirectoryA(StdW2A(folder).c_str(), nullptr))
        FailOn("cannot make", folder, GetLastError());
}

NarrowString PngOf(const Entry& entry) {
    NarrowString png = EncodePng(entry.Whole(), PngAlpha::Straight);
    if (png.empty())
        throw Failure{Shown(entry.name) + ": a picture of this depth cannot be written as PNG"};
    return png;
}

} // namespace

// An entry that repeats a picture has none by the time it is read, so all files of a picture are written at its first.
int Extract(const Arguments& arguments) {
    const WideString& album = arguments.values.front();
    const WideString folder = File::GetFullPath(arguments.values.back());
    const Files files = FilesFor(
        Selected(ContentsOf(album, "reading"), {arguments.values.begin() + 1, arguments.values.end() - 1}), folder);
    MakeFolder(folder);
    ReadAlbum(album, "extracting", [&](const Entry& entry) {
        const auto [first, last] = files.equal_range(entry.picture->number);
        if (entry.repeated || first == last)
            return;
        const NarrowString png = PngOf(entry);
        for (auto file = first; file != last; ++file)
            WriteWhole(file->second, png, CREATE_NEW); // nothing that exists is overwritten
    });
    std::printf("extracted %s into %s\n", Counted(files.size(), "picture").c_str(), Shown(folder).c_str());
    return 0;
}

} // namespace kelalbum
