#include "Commands.h"
#include "Contents.h"

#include <cstdio>

namespace kelalbum {
namespace {

std::string Measures(const Size& size) {
    return std::to_string(size.cx) + " x " + std::to_string(size.cy);
}

void PrintLine(const Listed& entry, const WideString& first) {
    std::printf("%13s %2d-bit %11s  %s", Measures(entry.size).c_str(), entry.depth, Bytes(entry.bytes).c_str(),
                Shown(entry.name).c_str());
    if (entry.repeated)
        std::printf("  (shared with %s)", Shown(first).c_str());
    std::printf("\n");
}

// A picture that can be read may still not be the one that was stored.
void Check(const Entry& entry) {
    if (entry.repeated)
        return;
    const XPDib whole = entry.Whole();
    const Size size = whole.GetDimension();
    const Picture& picture = *entry.picture;
    if (size.cx != picture.size.cx || size.cy != picture.size.cy || whole.GetBitsPerPixel() != picture.depth)
        throw Failure{Shown(entry.name) + ": its picture has other measures than the album says"};
    if (entry.Thumbnail().IsEmpty())
        throw Failure{Shown(entry.name) + ": it has no thumbnail"};
}

} // namespace

int List(const Arguments& arguments) {
    const auto contents = ContentsOf(arguments.values[0], "reading");
    std::vector<WideString> firstNames;
    for (const Listed& entry : contents) {
        if (!entry.repeated)
            firstNames.push_back(entry.name);
        PrintLine(entry, firstNames[static_cast<std::size_t>(entry.number)]);
    }
    return 0;
}

int Verify(const Arguments& arguments) {
    const WideString& album = arguments.values[0];
    unsigned entries = 0;
    unsigned long long bytes = 0;
    ReadAlbum(album, "verifying", [&](const Entry& entry) {
        Check(entry);
        ++entries;
        bytes += entry.repeated ? 0 : entry.picture->whole.Bytes();
    });
    std::printf("%s is sound: %s, %s\n", Shown(album).c_str(), Counted(entries, "picture").c_str(),
                Bytes(bytes).c_str());
    return 0;
}

} // namespace kelalbum
