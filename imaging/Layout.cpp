// The fields of exported classes are part of the interface of the 32-bit library: clients hold the objects by value.

#include <kelcore/picture.h>

#include <cstddef>

// Where fields lie in classes with virtual operations is the compiler's business, and this is about that compiler.
#pragma GCC diagnostic ignored "-Winvalid-offsetof"

namespace {

constexpr bool IsOn32Bits(std::size_t value, std::size_t expected) {
    return sizeof(void*) != 4 || value == expected;
}

using Record = XPDib::XPDibRef;

static_assert(IsOn32Bits(sizeof(XPDib), 20), "tables of picture, stream and object base, record, count");
static_assert(sizeof(Record::loadPending) == 1 && std::atomic<bool>::is_always_lock_free);
static_assert(IsOn32Bits(offsetof(Record, control), 4) && IsOn32Bits(offsetof(Record, fileName), 8));
static_assert(offsetof(Record, loadPending) == 2 * sizeof(void*) + sizeof(WideString));
static_assert(offsetof(Record, refCount) == 2 * sizeof(void*) + sizeof(WideString) + 4);
static_assert(IsOn32Bits(sizeof(Record), 40));
static_assert(sizeof(XPDibLoaderThread) == sizeof(Thread));
static_assert(sizeof(LoadBitmapDeferredNotifier) == sizeof(void*));
static_assert(IsOn32Bits(sizeof(CImagXpressEventHandler), 8) && IsOn32Bits(sizeof(CImagXpress), 56));
static_assert(IsOn32Bits(offsetof(CImagXpress, m_dwCookie), 8) && IsOn32Bits(offsetof(CImagXpress, m_pClick), 12));
static_assert(IsOn32Bits(offsetof(CImagXpress, m_dwUser1), 44) && IsOn32Bits(offsetof(CImagXpress, m_pControl), 52));
static_assert(IsOn32Bits(sizeof(kel::toolkit::Block), 4));

} // namespace
