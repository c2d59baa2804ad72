#pragma once

#include <kelcore/platform.h>

#include <cstring>

/// Global memory blocks and their bytes, for tests.
namespace kel::test {

/// A movable block with a copy of @p bytes, which is a text or a vector; null when there is no memory.
template <class Bytes>
HGLOBAL BlockOf(const Bytes& bytes) {
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, bytes.size());
    void* const memory = block ? GlobalLock(block) : nullptr;
    if (!memory)
        return block ? GlobalFree(block) : nullptr;
    std::memcpy(memory, bytes.data(), bytes.size());
    GlobalUnlock(block);
    return block;
}

/// A block's bytes; none for null and for what cannot be locked.
template <class Bytes>
Bytes BytesOf(HGLOBAL block) {
    const void* const memory = block ? GlobalLock(block) : nullptr;
    if (!memory)
        return {};
    const auto* const first = static_cast<const typename Bytes::value_type*>(memory);
    const Bytes bytes(first, first + GlobalSize(block));
    GlobalUnlock(block);
    return bytes;
}

} // namespace kel::test
