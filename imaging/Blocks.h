#pragma once

#include <kelcore/platform.h>

#include <utility>

/// @file
/// Movable blocks of memory: locked for a while, or owned.
namespace kel {

/// Keeps a block locked.
class LockedBlock {
public:
    explicit LockedBlock(HGLOBAL block) : m_block(block), m_bytes(static_cast<char*>(GlobalLock(block))) {}
    LockedBlock(const LockedBlock&) = delete;
    LockedBlock& operator=(const LockedBlock&) = delete;
    ~LockedBlock() {
        if (m_bytes)
            GlobalUnlock(m_block);
    }

    /// Where the block lies; null when it could not be locked.
    char* Bytes() const { return m_bytes; }

    /// The block as a packed bitmap.
    BITMAPINFO* Dib() const { return reinterpret_cast<BITMAPINFO*>(m_bytes); }

private:
    HGLOBAL m_block;
    char* m_bytes;
};

/// Owns a block until somebody takes it over.
class OwnedBlock {
public:
    explicit OwnedBlock(HGLOBAL block = nullptr) : m_block(block) {}
    OwnedBlock(const OwnedBlock&) = delete;
    OwnedBlock& operator=(const OwnedBlock&) = delete;
    ~OwnedBlock() {
        if (m_block)
            GlobalFree(m_block);
    }

    HGLOBAL Get() const { return m_block; }
    HGLOBAL Release() { return std::exchange(m_block, nullptr); }

    /// Makes the block, or changes its size.
    /// @return false when there is no memory; the block is as it was.
    bool Resize(SIZE_T bytes, UINT flags = GMEM_MOVEABLE) {
        const HGLOBAL block = m_block ? GlobalReAlloc(m_block, bytes, flags) : GlobalAlloc(flags, bytes);
        if (!block)
            return false;
        m_block = block;
        return true;
    }

private:
    HGLOBAL m_block;
};

} // namespace kel
