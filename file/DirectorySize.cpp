#include <kelcore/file.h>
#include <kelcore/text.h>

namespace {

constexpr unsigned short kEverything[] = {'\\', '*', '.', '*', 0};

WideString PatternOfAll(const WideString& directory) {
    const std::size_t length = directory.find_last_not_of(static_cast<unsigned short>(0)) + 1;
    WideString pattern;
    pattern.reserve(length + std::size(kEverything) - 1);
    return pattern.append(directory, 0, length).append(kEverything);
}

} // namespace

bool File::FileExists(const WideString& path) {
    return GetFileAttributesA(StdW2A(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

__int64 File::GetSizeRecursive(const WideString& path) {
    if (path.empty() || path[0] == 0)
        return -1;
    if (!IsDriveRoot(path)) {
        FileFinder finder;
        if (!finder.Start(path, /*withdots*/ false))
            return 0;
        if (!finder.IsDirectory())
            return finder.GetFileSize();
    }
    __int64 total = 0;
    GetDirSize(path, total);
    return total;
}

void File::GetDirSize(const WideString& path, __int64& total) {
    FileFinder finder;
    for (bool found = finder.Start(PatternOfAll(path), /*withdots*/ false); found; found = finder.Next()) {
        if (!finder.IsDirectory())
            total += finder.GetFileSize();
        else if (!finder.IsDots())
            GetDirSize(finder.GetFilePath(), total);
    }
}
