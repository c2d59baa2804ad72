#pragma once

#include <kelcore/widestring.h>

#include <cstdint>

/// @file
/// Telling GIF files and LZW-compressed TIFF files by their first bytes.
namespace kel {

/// Bytes that are read from any place on.
class ScanSource {
public:
    virtual std::uint64_t Size() = 0;
    /// @return whether reading goes on at @p offset; it may lie behind the end.
    virtual bool MoveTo(std::uint32_t offset) = 0;
    /// @return the bytes that arrived: fewer than @p count at the end and on failure.
    virtual std::uint32_t Read(void* bytes, std::uint32_t count) = 0;

protected:
    ~ScanSource() = default;
};

/// Whether the bytes are a GIF file, or a TIFF file whose first compression entry, through all directories, says LZW.
/// It takes time in proportion to the size of the source, whatever the bytes are: bytes that end early and directories
/// that run in a circle answer false.
bool IsRefusedForLzw(ScanSource& source);

/// The same for a file; false for one that cannot be read. Nothing is thrown.
bool IsRefusedForLzw(const WideString& path) noexcept;

} // namespace kel
