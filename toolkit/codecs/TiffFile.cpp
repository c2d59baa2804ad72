#include "toolkit/codecs/TiffFile.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace kel::toolkit {
namespace {

TiffSource& SourceOf(thandle_t handle) {
    return *static_cast<TiffSource*>(handle);
}

tmsize_t Read(thandle_t handle, void* to, tmsize_t count) {
    TiffSource& source = SourceOf(handle);
    const std::size_t given = std::min(source.file.size() - source.at, static_cast<std::size_t>(count));
    std::memcpy(to, source.file.data() + source.at, given);
    source.at += given;
    return static_cast<tmsize_t>(given);
}

tmsize_t Write(thandle_t, void*, tmsize_t) {
    return -1;
}

// Positions past the end are brought back to it: nothing can be read there.
toff_t Seek(thandle_t handle, toff_t offset, int origin) {
    TiffSource& source = SourceOf(handle);
    const toff_t base = origin == SEEK_SET ? 0 : origin == SEEK_CUR ? source.at : source.file.size();
    source.at = static_cast<std::size_t>(std::min<toff_t>(base + offset, source.file.size()));
    return source.at;
}

int Close(thandle_t) {
    return 0;
}

toff_t Size(thandle_t handle) {
    return SourceOf(handle).file.size();
}

int Map(thandle_t handle, void** base, toff_t* size) {
    const Bytes file = SourceOf(handle).file;
    // The library only reads what it has mapped.
    *base = const_cast<BYTE*>(file.data());
    *size = file.size();
    return 1;
}

void Unmap(thandle_t, void*, toff_t) {}

/// Non-zero: the complaint has been dealt with and is not printed.
int OnComplaint(TIFF*, void*, const char*, const char*, va_list) {
    return 1;
}

struct FreeOptions {
    void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
};

} // namespace

Tiff OpenTiff(TiffSource& source, std::uint64_t most) {
    const std::unique_ptr<TIFFOpenOptions, FreeOptions> options(TIFFOpenOptionsAlloc());
    if (!options)
        return nullptr;
    TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), static_cast<tmsize_t>(most));
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), &OnComplaint, /*user*/ nullptr);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), &OnComplaint, /*user*/ nullptr);
    return Tiff(TIFFClientOpenExt("", "r", &source, &Read, &Write, &Seek, &Close, &Size, &Map, &Unmap, options.get()));
}

} // namespace kel::toolkit
