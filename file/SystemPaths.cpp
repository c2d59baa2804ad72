#include <kelcore/file.h>
#include <kelcore/text.h>

#include <algorithm>

WideString File::GetFullPath(const WideString& path) {
    const NarrowString narrow = StdW2A(path);
    char buffer[MAX_PATH];
    DWORD count = GetFullPathNameA(narrow.c_str(), sizeof buffer, buffer, /*filePart*/ nullptr);
    if (count == 0)
        return path;
    if (count < sizeof buffer)
        return StdA2W(buffer);
    // Another thread may change the current directory between two calls, so the answer may grow again.
    NarrowString large;
    while (count > large.size()) {
        large.resize(count);
        count = GetFullPathNameA(narrow.c_str(), count, large.data(), /*filePart*/ nullptr);
    }
    return count == 0 ? path : StdA2W(large);
}

WideString File::GetShortPath(const WideString& path) {
    const NarrowString narrow = StdW2A(path);
    const DWORD size = GetShortPathNameA(narrow.c_str(), nullptr, 0);
    if (size == 0)
        return {};
    NarrowString buffer(size + std::size_t(1), '\0');
    const DWORD count = GetShortPathNameA(narrow.c_str(), buffer.data(), size + 1);
    buffer.resize(std::min<std::size_t>(count, buffer.size()));
    return StdA2W(buffer);
}

WideString File::CompactPath(const WideString& path, unsigned int maxchars) {
    const NarrowString narrow = StdW2A(path);
    // A path that fits is given back whole whatever room there is beyond one character: the system shortens a path that
    // fills the buffer to the last one.
    const std::size_t room = std::min<std::size_t>(maxchars, std::max<std::size_t>(narrow.size() + 1, MAX_PATH));
    NarrowString buffer(room + 1, '\0');
    if (!PathCompactPathExA(buffer.data(), narrow.c_str(), static_cast<UINT>(room + 1), /*flags*/ 0))
        return {};
    return StdA2W(buffer);
}
