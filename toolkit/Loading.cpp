#include "toolkit/Loading.h"

#include "toolkit/Fingerprint.h"
#include "toolkit/SavedPicture.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <string>

namespace kel::toolkit {
namespace {

// What is read to tell a file's kind, before the rest is.
constexpr std::size_t kSniffBytes = 4096;
// Lengths in memory are 32-bit numbers; larger files are none of a picture's.
constexpr LONGLONG kMostFileBytes = std::numeric_limits<LONG>::max();

const Codec* FindCodec(Bytes file) {
    for (const Codec* codec : Codecs())
        if (codec->sniff(file))
            return codec;
    return nullptr;
}

bool IsKnown(Bytes file) {
    return IsSavedPicture(file) || FindCodec(file) != nullptr;
}

FileBytes MakeBytes(std::size_t size) {
    return {std::make_unique_for_overwrite<BYTE[]>(size), size};
}

/// A file as it has to be decoded, and what came of that.
struct Decoding {
    Bytes file;
    LoadSettings settings;
    Loaded loaded;
    std::optional<std::uint64_t> rowsFingerprint = {};
};

void DecodeFile(Decoding& decoding) {
    const Codec* const codec = FindCodec(decoding.file);
    decoding.loaded.status = kUnknown;
    if (!codec)
        return;
    LoadJob job{decoding.file, decoding.settings.budget, decoding.settings.keepOrientation, {}};
    decoding.loaded.status = codec->load(job);
    if (decoding.loaded.status == kLoaded)
        decoding.loaded.picture.dib = std::move(job.picture);
    decoding.rowsFingerprint = job.rowsFingerprint;
}

/// Decodes a file of any kind. A saved picture that holds a file leaves that file in the result.
Decoding Decode(Bytes file, const LoadSettings& settings) {
    Decoding decoding{file, settings, {}};
    if (!IsSavedPicture(file)) {
        DecodeFile(decoding);
        return decoding;
    }
    SavedPicture saved = ReadSavedPicture(file, settings.budget);
    decoding.loaded.status = saved.status;
    decoding.loaded.picture.dib = std::move(saved.dib);
    decoding.file = saved.file;
    decoding.settings.keepOrientation = saved.keepOrientation;
    if (!saved.file.empty())
        DecodeFile(decoding);
    return decoding;
}

bool IsWorthKeeping(const Decoding& decoding) {
    const PackedDib& dib = decoding.loaded.picture.dib;
    return dib && !decoding.file.empty() && decoding.file.size() <= dib.Layout().TotalBytes() / 2;
}

/// Gives the picture its source. @param owned the bytes that were decoded, if they can be taken over.
Loaded Finish(Decoding decoding, FileBytes owned) {
    if (!IsWorthKeeping(decoding))
        return std::move(decoding.loaded);
    if (owned.size != decoding.file.size()) {
        owned = MakeBytes(decoding.file.size());
        std::memcpy(owned.data.get(), decoding.file.data(), owned.size);
    }
    Picture& picture = decoding.loaded.picture;
    if (const DibLock lock(picture.dib); lock)
        picture.source = {std::move(owned), decoding.settings.keepOrientation,
                          FrontFingerprint(lock) +
                              (decoding.rowsFingerprint ? *decoding.rowsFingerprint : RowsFingerprint(lock))};
    return std::move(decoding.loaded);
}

/// The spelling of a text in the ANSI code page.
std::string NarrowPath(BSTR path) {
    const int units = static_cast<int>(SysStringLen(path));
    const int size = WideCharToMultiByte(CP_ACP, /*flags*/ 0, path, units, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<std::size_t>(std::max(size, 0)), '\0');
    WideCharToMultiByte(CP_ACP, /*flags*/ 0, path, units, narrow.data(), size, nullptr, nullptr);
    return narrow;
}

/// A file open for reading.
class InputFile {
public:
    explicit InputFile(const char* path)
        : m_file(CreateFileA(path, GENERIC_READ, FILE_SHARE_READ, /*security*/ nullptr, OPEN_EXISTING,
                             FILE_ATTRIBUTE_NORMAL, /*template*/ nullptr)) {}
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    ~InputFile() {
        if (m_file != INVALID_HANDLE_VALUE)
            CloseHandle(m_file);
    }

    /// 0 for what is no file, for an empty one and for one that cannot be a picture's.
    std::size_t Size() const {
        LARGE_INTEGER size;
        const bool known = m_file != INVALID_HANDLE_VALUE && GetFileSizeEx(m_file, &size);
        return known && size.QuadPart <= kMostFileBytes ? static_cast<std::size_t>(size.QuadPart) : 0;
    }

    bool Read(BYTE* to, std::size_t count) const {
        DWORD read = 0;
        return ReadFile(m_file, to, static_cast<DWORD>(count), &read, /*overlapped*/ nullptr) && read == count;
    }

private:
    const HANDLE m_file;
};

/// The bytes of a file whose beginning is of a known kind; none otherwise.
FileBytes ReadKnownFile(const char* path) {
    const InputFile file(path);
    const std::size_t size = file.Size();
    const std::size_t first = std::min(size, kSniffBytes);
    BYTE begin[kSniffBytes];
    if (size == 0 || !file.Read(begin, first) || !IsKnown({begin, first}))
        return {};
    FileBytes bytes{std::make_unique_for_overwrite<BYTE[]>(size), size};
    std::memcpy(bytes.data.get(), begin, first);
    if (size != first && !file.Read(bytes.data.get() + first, size - first))
        return {};
    return bytes;
}

} // namespace

SHORT MakePicture(LoadJob& job, std::int64_t width, std::int64_t height, int depth, std::size_t colours, Fresh fresh) {
    job.picture = {};
    const std::optional<DibLayout> layout = LayoutOf(width, height, depth, colours);
    if (!layout)
        return width < 1 || height < 1 ? kDamaged : kOverBudget;
    if (job.budget.Allows(*layout))
        job.picture = fresh == Fresh::Zeros ? PackedDib::Make(*layout) : PackedDib::MakeForPixels(*layout);
    return job.picture ? kLoaded : kOverBudget;
}

bool Picture::IsAsDecoded() const {
    const DibLock lock(dib);
    return lock && source.file.size != 0 && FrontFingerprint(lock) + RowsFingerprint(lock) == source.fingerprint;
}

Loaded LoadBytes(Bytes file, const LoadSettings& settings) try {
    return Finish(Decode(file, settings), {});
} catch (const std::bad_alloc&) {
    return {kOverBudget, {}};
}

Loaded LoadPath(BSTR path, const LoadSettings& settings) try {
    FileBytes file = ReadKnownFile(NarrowPath(path).c_str());
    const Bytes bytes = file.View();
    return Finish(Decode(bytes, settings), std::move(file));
} catch (const std::bad_alloc&) {
    return {kOverBudget, {}};
}

} // namespace kel::toolkit
