#include "toolkit/SavedPicture.h"

#include "toolkit/Fingerprint.h"
#include "toolkit/RowPrediction.h"

#include <zlib.h>

#include <bit>
#include <cstddef>
#include <cstring>
#include <limits>
#include <memory>

namespace kel::toolkit {
namespace {

static_assert(std::endian::native == std::endian::little);

// As in other formats, the line ends and the end-of-text show what went through a text conversion.
constexpr BYTE kSignature[8] = {'K', 'P', 'I', 'C', '\r', '\n', 0x1A, '\n'};
constexpr std::uint16_t kVersion = 1;

enum Content : std::uint8_t { kBitmap = 0, kFile = 1 };
enum Flags : std::uint8_t { kKeepOrientation = 1 };

struct FileHeader {
    BYTE signature[8];
    std::uint16_t version;
    std::uint8_t content;
    std::uint8_t flags;
    std::uint32_t length; // of what follows the header
    std::uint64_t check;  // of what follows the header, seeded with that of the fields before
};
static_assert(sizeof(FileHeader) == 24 && offsetof(FileHeader, check) == 16);

struct BitmapHeader {
    std::uint32_t front;   // bytes of the bitmap before its rows, which follow this header
    std::uint32_t predict; // bytes of a pixel whose neighbours predict it; 0 for rows as they are
};
static_assert(sizeof(BitmapHeader) == 8);

// Deflate cannot make more of one byte.
constexpr std::uint64_t kMostInflation = 1032;
// Pictures are saved while somebody waits; the levels above cost several times as much for a few hundredths.
constexpr int kLevel = 1;

std::uint64_t CheckOf(const FileHeader& header, Bytes content) {
    const Bytes fields{reinterpret_cast<const BYTE*>(&header), offsetof(FileHeader, check)};
    return Fingerprint(content, Fingerprint(fields));
}

void WriteHeader(BYTE* memory, Content content, std::uint8_t flags, std::size_t length) {
    FileHeader header = {};
    std::memcpy(header.signature, kSignature, sizeof kSignature);
    header.version = kVersion;
    header.content = content;
    header.flags = flags;
    header.length = static_cast<std::uint32_t>(length);
    header.check = CheckOf(header, {memory + sizeof header, length});
    std::memcpy(memory, &header, sizeof header);
}

/// A new movable block that is being filled.
class OutputBlock {
public:
    explicit OutputBlock(std::size_t bytes)
        : m_block(GlobalAlloc(GMEM_MOVEABLE, bytes)), m_bytes(bytes),
          m_memory(m_block ? static_cast<BYTE*>(GlobalLock(m_block)) : nullptr) {}
    OutputBlock(const OutputBlock&) = delete;
    OutputBlock& operator=(const OutputBlock&) = delete;
    ~OutputBlock() { GlobalFree(m_block); }

    BYTE* Memory() const { return m_memory; }

    /// Gives the block away, cut to what was used.
    HGLOBAL Finish(std::size_t used) {
        GlobalUnlock(m_block);
        if (used != m_bytes && !GlobalReAlloc(m_block, used, GMEM_MOVEABLE))
            return nullptr;
        return std::exchange(m_block, nullptr);
    }

private:
    HGLOBAL m_block;
    const std::size_t m_bytes;
    BYTE* const m_memory;
};

bool IsPredicted(const DibLayout& layout) {
    return layout.depth >= 24;
}

std::size_t BytesOfPixel(const DibLayout& layout) {
    return static_cast<std::size_t>(layout.depth) / 8;
}

/// Compresses into memory that is large enough.
class Deflater {
public:
    explicit Deflater(int strategy)
        : m_ready(deflateInit2(&m_stream, kLevel, Z_DEFLATED, MAX_WBITS, MAX_MEM_LEVEL, strategy) == Z_OK) {}
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;
    ~Deflater() {
        if (m_ready)
            deflateEnd(&m_stream);
    }

    explicit operator bool() const { return m_ready; }
    std::size_t Bound(std::size_t bytes) { return deflateBound(&m_stream, static_cast<uLong>(bytes)); }

    void Begin(BYTE* to, std::size_t room) {
        m_stream.next_out = to;
        m_stream.avail_out = static_cast<uInt>(room);
    }
    void Add(const BYTE* bytes, std::size_t count) { Run(bytes, count, Z_NO_FLUSH); }
    /// @return the bytes that everything took.
    std::size_t End() {
        Run(nullptr, 0, Z_FINISH);
        return m_stream.total_out;
    }

private:
    void Run(const BYTE* bytes, std::size_t count, int flush) {
        m_stream.next_in = const_cast<BYTE*>(bytes); // it is only read
        m_stream.avail_in = static_cast<uInt>(count);
        deflate(&m_stream, flush);
    }

    z_stream m_stream = {};
    const bool m_ready;
};

void AddRows(Deflater& deflater, const DibLock& dib) {
    const DibLayout& layout = dib.Layout();
    if (!IsPredicted(layout)) {
        deflater.Add(dib.Pixels().data(), dib.Pixels().size());
        return;
    }
    const auto left = std::make_unique_for_overwrite<BYTE[]>(layout.rowBytes);
    const BYTE* previous = nullptr;
    for (const BYTE* row = dib.Pixels().data(); row != dib.Memory().data() + layout.TotalBytes();
         row += layout.rowBytes) {
        PredictRow(left.get(), row, previous, layout.rowBytes, BytesOfPixel(layout));
        deflater.Add(left.get(), layout.rowBytes);
        previous = row;
    }
}

/// Expands the whole of @p compressed into exactly @p rows.
bool Inflate(std::span<BYTE> rows, Bytes compressed) {
    z_stream stream = {};
    if (inflateInit(&stream) != Z_OK)
        return false;
    stream.next_in = const_cast<BYTE*>(compressed.data()); // it is only read
    stream.avail_in = static_cast<uInt>(compressed.size());
    stream.next_out = rows.data();
    stream.avail_out = static_cast<uInt>(rows.size());
    const bool whole = inflate(&stream, Z_FINISH) == Z_STREAM_END && stream.avail_out == 0 && stream.avail_in == 0;
    inflateEnd(&stream);
    return whole;
}

void RestoreRows(const DibLock& dib, std::size_t step) {
    const std::size_t bytes = dib.Layout().rowBytes;
    const BYTE* previous = nullptr;
    for (BYTE* row = dib.Pixels().data(); row != dib.Memory().data() + dib.Layout().TotalBytes(); row += bytes) {
        RestoreRow(row, previous, bytes, step);
        previous = row;
    }
}

SHORT ReadRows(const PackedDib& dib, const BitmapHeader& header, Bytes compressed) {
    const DibLock lock(dib);
    if (!lock)
        return kOverBudget;
    if (!Inflate(lock.Pixels(), compressed))
        return kDamaged;
    if (header.predict != 0)
        RestoreRows(lock, header.predict);
    return kLoaded;
}

SHORT ReadBitmap(PackedDib& dib, Bytes content, const Budget& budget) {
    BitmapHeader header;
    if (content.size() < sizeof header)
        return kDamaged;
    std::memcpy(&header, content.data(), sizeof header);
    const Bytes behind = content.subspan(sizeof header);
    if (header.front > behind.size())
        return kDamaged;
    const Bytes front = behind.first(header.front);
    const Bytes compressed = behind.subspan(header.front);
    const std::optional<DibLayout> layout = ExamineDibFront(front);
    if (!layout || layout->rows != front.size() || layout->PixelBytes() / kMostInflation > compressed.size() ||
        (header.predict != 0 && header.predict != BytesOfPixel(*layout)))
        return kDamaged;
    if (!budget.Allows(*layout))
        return kOverBudget;
    PackedDib made = PackedDib::Make(*layout, front);
    const SHORT status = made ? ReadRows(made, header, compressed) : kOverBudget;
    if (status != kLoaded)
        return status;
    made.DropMasks();
    dib = std::move(made);
    return status;
}

} // namespace

bool IsSavedPicture(Bytes file) {
    return file.size() >= sizeof kSignature && std::memcmp(file.data(), kSignature, sizeof kSignature) == 0;
}

SavedPicture ReadSavedPicture(Bytes saved, const Budget& budget) {
    SavedPicture picture;
    FileHeader header;
    if (saved.size() < sizeof header)
        return picture;
    std::memcpy(&header, saved.data(), sizeof header);
    if (header.length > saved.size() - sizeof header)
        return picture;
    const Bytes content = saved.subspan(sizeof header, header.length);
    if (header.check != CheckOf(header, content))
        return picture;
    if (header.version != kVersion || header.content > kFile) {
        picture.status = kUnknown; // whole, but of a later time
    } else if (header.content == kBitmap) {
        picture.status = ReadBitmap(picture.dib, content, budget);
    } else if (!content.empty() && !IsSavedPicture(content)) {
        picture.status = kLoaded;
        picture.file = content;
        picture.keepOrientation = header.flags & kKeepOrientation;
    }
    return picture;
}

HGLOBAL SaveBitmap(const DibLock& dib) {
    const DibLayout& layout = dib.Layout();
    // What prediction leaves are small numbers in no order: runs are all that is worth looking for.
    Deflater deflater(IsPredicted(layout) ? Z_RLE : Z_DEFAULT_STRATEGY);
    if (!deflater)
        return nullptr;
    constexpr std::size_t kHeaders = sizeof(FileHeader) + sizeof(BitmapHeader);
    const std::size_t bound = deflater.Bound(layout.PixelBytes());
    OutputBlock block(kHeaders + layout.rows + bound);
    BYTE* const memory = block.Memory();
    if (!memory)
        return nullptr;
    const BitmapHeader header{static_cast<std::uint32_t>(layout.rows),
                              static_cast<std::uint32_t>(IsPredicted(layout) ? BytesOfPixel(layout) : 0)};
    std::memcpy(memory + sizeof(FileHeader), &header, sizeof header);
    std::memcpy(memory + kHeaders, dib.Memory().data(), layout.rows);
    deflater.Begin(memory + kHeaders + layout.rows, bound);
    AddRows(deflater, dib);
    const std::size_t used = kHeaders + layout.rows + deflater.End();
    WriteHeader(memory, kBitmap, /*flags*/ 0, used - sizeof(FileHeader));
    return block.Finish(used);
}

HGLOBAL SaveFile(Bytes file, bool keepOrientation) {
    const std::size_t size = sizeof(FileHeader) + file.size();
    OutputBlock block(size);
    if (!block.Memory())
        return nullptr;
    std::memcpy(block.Memory() + sizeof(FileHeader), file.data(), file.size());
    WriteHeader(block.Memory(), kFile, keepOrientation ? kKeepOrientation : 0, file.size());
    return block.Finish(size);
}

} // namespace kel::toolkit
