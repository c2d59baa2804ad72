#include "tests/support/recorder/Dib.h"

#include "tests/support/Blocks.h"

#include <cstdio>
#include <cstring>

namespace kel::recorder {

std::string PackedDib(int width, int height, int depth, bool blank) {
    BITMAPINFOHEADER header = {};
    header.biSize = sizeof header;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = static_cast<WORD>(depth);
    const int colours = depth <= 8 ? 4 << depth : 0;
    const int rows = (width * depth + 31) / 32 * 4 * (height < 0 ? -height : height);
    std::string dib(sizeof header + static_cast<std::size_t>(colours + rows), '\0');
    for (std::size_t i = 0; !blank && i != dib.size(); ++i)
        dib[i] = static_cast<char>(i * 37 + 1);
    std::memcpy(dib.data(), &header, sizeof header);
    return dib;
}

std::string DescribeDib(HGLOBAL block) {
    const std::string dib = test::BytesOf<std::string>(block);
    BITMAPINFOHEADER header;
    if (dib.size() < sizeof header)
        return "0";
    std::memcpy(&header, dib.data(), sizeof header);
    return std::to_string(header.biWidth) + "x" + std::to_string(header.biHeight) + "x" +
           std::to_string(header.biBitCount);
}

std::string DibOfFile(const std::string& file) {
    int width = 0, height = 0, depth = 0;
    if (file.compare(0, 3, "DIB") == 0)
        return file.substr(3);
    if (std::sscanf(file.c_str(), "%dx%dx%d", &width, &height, &depth) == 3)
        return PackedDib(width, height, depth);
    return {};
}

} // namespace kel::recorder
