#include "imaging/LzwScan.h"
#include "tests/support/TempFolder.h"

#include <kelcore/picture.h>

#include <doctest/doctest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

namespace {

constexpr int kWidth = 256;
constexpr int kCompression = 259;

// The bytes of a TIFF file, number by number.
struct Tiff {
    bool big;
    std::string bytes;

    explicit Tiff(bool isBig = false) : big(isBig), bytes(isBig ? std::string("MM\0*", 4) : std::string("II*\0", 4)) {}

    Tiff& Number(unsigned value, int size) {
        for (int i = 0; i != size; ++i)
            bytes += static_cast<char>(value >> 8 * (big ? size - 1 - i : i));
        return *this;
    }
    Tiff& Offset(unsigned value) { return Number(value, 4); }
    Tiff& Count(unsigned value) { return Number(value, 2); }
    Tiff& Entry(unsigned tag, unsigned value) { return Number(tag, 2).Number(3, 2).Number(1, 4).Number(value, 4); }
    Tiff& Entries(int count) {
        while (count-- != 0)
            Entry(kWidth, 5);
        return *this;
    }
};

std::string WithCompressionAt(unsigned place) {
    Tiff file;
    file.Offset(8).Count(place + 2).Entries(static_cast<int>(place));
    return file.Entry(kCompression, 5).Entry(kCompression, 1).Offset(0).bytes;
}

// A ring of directories without entries behind @p lead others; each is 6 bytes long.
std::string Ring(unsigned lead, unsigned length) {
    Tiff file;
    file.Offset(8);
    for (unsigned i = 1; i != lead + length; ++i)
        file.Count(0).Offset(8 + 6 * i);
    return file.Count(0).Offset(8 + 6 * lead).bytes;
}

// Directories of many entries, each but a little further on than the one before: together much more than the file.
std::string Overlapping() {
    constexpr unsigned kEntries = 4096;
    constexpr unsigned kStep = 24;
    constexpr unsigned kDirectories = 2000;
    std::string bytes = Tiff().Offset(8).bytes;
    bytes.resize(8 + kEntries * 12 + kDirectories * kStep + 64);
    for (unsigned i = 0; i != kDirectories; ++i) {
        const unsigned at = 8 + i * kStep;
        bytes[at + 1] = kEntries >> 8;
        const std::string next = Tiff().Offset(at + kStep).bytes.substr(4);
        bytes.replace(at + 2 + kEntries * 12, 4, next);
    }
    return bytes;
}

struct Row {
    const char* what;
    std::string bytes;
    bool refused;
};

std::vector<Row> Rows() {
    const std::string lzw = Tiff().Offset(8).Count(1).Entry(kCompression, 5).Offset(0).bytes;
    return {
        {"nothing", "", false},
        {"GIF", "GIF89a", true},
        {"three bytes of GIF", "GIF", false},
        {"JPEG", "\xFF\xD8\xFF\xE0 JFIF", false},
        {"little-endian LZW", lzw, true},
        {"big-endian LZW", Tiff(true).Offset(8).Count(1).Entry(kCompression, 5).Offset(0).bytes, true},
        {"big-endian LZW as a short", Tiff(true).Offset(8).Count(1).Entry(kCompression, 5 << 16).Offset(0).bytes,
         false},
        {"mixed byte orders", "IM*" + lzw.substr(3), false},
        {"no compression", Tiff().Offset(8).Count(1).Entry(kCompression, 1).Offset(0).bytes, false},
        {"no such entry", Tiff().Offset(8).Count(2).Entries(2).Offset(0).bytes, false},
        {"no directory", Tiff().Offset(0).bytes, false},
        {"no offset", Tiff().bytes + "\x08", false},
        {"directory behind the end", Tiff().Offset(0xFFFFFFF0).bytes, false},
        {"LZW in the second directory",
         Tiff().Offset(8).Count(1).Entries(1).Offset(26).Count(1).Entry(kCompression, 5).Offset(0).bytes, true},
        {"the first compression counts",
         Tiff().Offset(8).Count(1).Entry(kCompression, 1).Offset(26).Count(1).Entry(kCompression, 5).Offset(0).bytes,
         false},
        {"cut behind the compression", lzw.substr(0, lzw.size() - 4), true},
        {"cut in the compression", lzw.substr(0, lzw.size() - 5), false},
        {"more entries claimed than there are", Tiff().Offset(8).Count(900).Entries(3).Entry(kCompression, 5).bytes,
         true},
        {"compression is entry 127", WithCompressionAt(127), true},
        {"compression is entry 128", WithCompressionAt(128), true},
        {"compression is entry 129", WithCompressionAt(129), true},
        {"a directory that leads to itself", Ring(0, 1), false},
        {"two that lead to each other", Ring(0, 2), false},
        {"a ring behind some", Ring(5, 11), false},
        {"directories over each other", Overlapping(), false},
    };
}

class Memory final : public kel::ScanSource {
public:
    explicit Memory(const std::string& bytes) : m_bytes(bytes) {}

    std::uint64_t Size() override { return m_bytes.size(); }
    bool MoveTo(std::uint32_t offset) override {
        m_at = std::min<std::size_t>(offset, m_bytes.size());
        return true;
    }
    std::uint32_t Read(void* bytes, std::uint32_t count) override {
        const auto arrived = static_cast<std::uint32_t>(std::min<std::size_t>(count, m_bytes.size() - m_at));
        std::memcpy(bytes, m_bytes.data() + m_at, arrived);
        m_at += arrived;
        m_read += arrived;
        return arrived;
    }
    std::uint64_t BytesRead() const { return m_read; }

private:
    const std::string& m_bytes;
    std::size_t m_at = 0;
    std::uint64_t m_read = 0;
};

struct Checker : XPDib {
    using XPDib::CheckLZW;
};

} // namespace

TEST_CASE("GIF and LZW are told by the first bytes, and no bytes take long") {
    const TempFolder folder;
    for (const Row& row : Rows()) {
        CAPTURE(row.what);
        Memory memory(row.bytes);
        CHECK(kel::IsRefusedForLzw(memory) == row.refused);
        CHECK(memory.BytesRead() <= 4 * row.bytes.size() + 16);
        CHECK(Checker::CheckLZW(folder.Write("file", row.bytes)) == row.refused);
    }
    CHECK_FALSE(Checker::CheckLZW(folder.Path("missing")));
    CHECK_FALSE(Checker::CheckLZW(folder.Path()));
}
