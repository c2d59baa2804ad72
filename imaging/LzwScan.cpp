#include "imaging/LzwScan.h"

#include <kelcore/platform.h>
#include <kelcore/text.h>

#include <algorithm>
#include <cstring>
#include <optional>

namespace kel {
namespace {

constexpr std::uint16_t kCompressionTag = 259;
constexpr std::uint32_t kLzw = 5;
constexpr std::uint32_t kEntryBytes = 12; // tag, type, count, value
constexpr std::uint32_t kEntriesAtOnce = 128;

// A TIFF file's directories, one after the other.
class TiffScan {
public:
    TiffScan(ScanSource& source, bool isBigEndian) : m_source(source), m_isBigEndian(isBigEndian) {}

    bool IsLzw() {
        std::uint32_t offset = 0;
        if (!Read(offset))
            return false;
        std::uint64_t left = m_source.Size();
        while (offset != 0 && !IsKnown(offset)) {
            std::uint16_t entries = 0;
            if (!m_source.MoveTo(offset) || !Read(entries))
                return false;
            // Directories that do not overlap fit into the file together. Others could be so many that the scan would
            // take for ever.
            const std::uint64_t bytes = std::uint64_t{entries} * kEntryBytes + sizeof entries + sizeof offset;
            if (bytes > left)
                return IsLzwAmong(entries).value_or(false);
            left -= bytes;
            if (const auto answer = IsLzwAmong(entries))
                return *answer;
            if (!Read(offset))
                return false;
        }
        return false;
    }

private:
    // The next @p entries: whether a compression says LZW; no answer if all of them are about other things.
    std::optional<bool> IsLzwAmong(std::uint32_t entries) {
        unsigned char bytes[kEntriesAtOnce * kEntryBytes];
        while (entries != 0) {
            const std::uint32_t wanted = std::min(entries, kEntriesAtOnce);
            const std::uint32_t arrived = m_source.Read(bytes, wanted * kEntryBytes) / kEntryBytes;
            for (std::uint32_t i = 0; i != arrived; ++i) {
                const unsigned char* const entry = bytes + i * kEntryBytes;
                if (Number<std::uint16_t>(entry) == kCompressionTag)
                    return Number<std::uint32_t>(entry + 8) == kLzw;
            }
            if (arrived != wanted)
                return false;
            entries -= wanted;
        }
        return std::nullopt;
    }

    // Remembers the directories number 1, 2, 4, 8 …: a circle comes back to one of them.
    bool IsKnown(std::uint32_t offset) {
        if (offset == m_remembered)
            return true;
        if (++m_visited == m_rememberNext) {
            m_remembered = offset;
            m_rememberNext *= 2;
        }
        return false;
    }

    template <class Value>
    bool Read(Value& value) {
        unsigned char bytes[sizeof value];
        if (m_source.Read(bytes, sizeof bytes) != sizeof bytes)
            return false;
        value = Number<Value>(bytes);
        return true;
    }

    template <class Value>
    Value Number(const unsigned char* bytes) const {
        Value value = 0;
        for (std::size_t i = 0; i != sizeof value; ++i) {
            const std::size_t shift = 8 * (m_isBigEndian ? sizeof value - 1 - i : i);
            value = static_cast<Value>(value | static_cast<Value>(bytes[i]) << shift);
        }
        return value;
    }

    ScanSource& m_source;
    const bool m_isBigEndian;
    std::uint32_t m_remembered = 0;
    std::uint64_t m_visited = 0;
    std::uint64_t m_rememberNext = 1;
};

class FileSource final : public ScanSource {
public:
    explicit FileSource(const WideString& path)
        : m_file(CreateFileA(StdW2A(path).c_str(), GENERIC_READ, FILE_SHARE_READ, /*security*/ nullptr, OPEN_EXISTING,
                             FILE_ATTRIBUTE_NORMAL, /*template*/ nullptr)) {}
    FileSource(const FileSource&) = delete;
    FileSource& operator=(const FileSource&) = delete;
    ~FileSource() {
        if (IsOpen())
            CloseHandle(m_file);
    }

    bool IsOpen() const { return m_file != INVALID_HANDLE_VALUE; }

    std::uint64_t Size() override {
        LARGE_INTEGER size = {};
        return GetFileSizeEx(m_file, &size) ? static_cast<std::uint64_t>(size.QuadPart) : 0;
    }

    bool MoveTo(std::uint32_t offset) override {
        LONG high = 0; // without it, offsets from 2 GiB on would be negative
        return SetFilePointer(m_file, static_cast<LONG>(offset), &high, FILE_BEGIN) == offset;
    }

    std::uint32_t Read(void* bytes, std::uint32_t count) override {
        DWORD arrived = 0;
        return ReadFile(m_file, bytes, count, &arrived, /*overlapped*/ nullptr) ? arrived : 0;
    }

private:
    HANDLE m_file;
};

} // namespace

bool IsRefusedForLzw(ScanSource& source) {
    char head[4];
    if (source.Read(head, sizeof head) != sizeof head)
        return false;
    if (std::memcmp(head, "GIF", 3) == 0)
        return true;
    if (std::memcmp(head, "II*\0", sizeof head) == 0)
        return TiffScan(source, /*big-endian*/ false).IsLzw();
    if (std::memcmp(head, "MM\0*", sizeof head) == 0)
        return TiffScan(source, /*big-endian*/ true).IsLzw();
    return false;
}

bool IsRefusedForLzw(const WideString& path) noexcept {
    try {
        FileSource source(path);
        return source.IsOpen() && IsRefusedForLzw(source);
    } catch (...) { // no memory for the path
        return false;
    }
}

} // namespace kel
