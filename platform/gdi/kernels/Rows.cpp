#include "platform/gdi/kernels/Rows.h"

#include "platform/crt/Avx2.h"
#include "platform/gdi/kernels/Loops.h"

namespace kel::platform {
namespace {

template <std::size_t bytes>
void PickSingly(std::uint8_t* to, const std::uint8_t* from, const std::vector<int>& columns) {
    for (const int column : columns) {
        std::memcpy(to, from + static_cast<std::size_t>(column) * bytes, bytes);
        to += bytes;
    }
}

void Pick(std::uint8_t* to, const std::uint8_t* from, const ColumnPlan& plan) {
    switch (plan.Bytes()) {
    case 1:
        return PickSingly<1>(to, from, plan.Columns());
    case 2:
        return PickSingly<2>(to, from, plan.Columns());
    case 3:
        return PickSingly<3>(to, from, plan.Columns());
    default:
        return PickSingly<4>(to, from, plan.Columns());
    }
}

void Fill(std::uint8_t* to, std::uint32_t value, std::size_t count, int bytes) {
    const auto size = static_cast<std::size_t>(bytes);
    for (std::size_t i = 0; i < size && count > 0; ++i)
        to[i] = static_cast<std::uint8_t>(value >> 8 * i);
    RepeatBytes(to, size, count * size);
}

void Copy(std::uint8_t* to, const std::uint8_t* from, std::size_t count) {
    std::memcpy(to, from, count);
}

void Settle() {}

void Combine(std::uint8_t* to, const std::uint8_t* source, const std::uint8_t* pattern, std::size_t count,
             unsigned rop) {
    CombineLoop(to, source ? source : to, pattern ? pattern : to, count, rop);
}

void Widen(std::uint8_t* to, const std::uint8_t* from, std::size_t count) {
    WidenLoop(to, from, count);
}

void Narrow(std::uint8_t* to, const std::uint8_t* from, std::size_t count) {
    NarrowLoop(to, from, count);
}

void CopyUnless24(std::uint8_t* to, const std::uint8_t* from, std::size_t count, std::uint32_t key) {
    CopyUnlessLoop<3>(to, from, count, key);
}

void CopyUnless32(std::uint8_t* to, const std::uint8_t* from, std::size_t count, std::uint32_t key) {
    CopyUnlessLoop<4>(to, from, count, key);
}

void Weigh(std::uint8_t* to, const std::uint8_t* from, std::size_t count, unsigned opacity) {
    WeighLoop(to, from, count, opacity);
}

void Lay(std::uint8_t* to, const std::uint8_t* from, std::size_t count, unsigned opacity) {
    LayLoop(to, from, count, opacity);
}

} // namespace

const RowRoad kPlainRows = {&Pick,         &Fill,  &Copy, &Settle, &Combine, &CopyUnless24,
                            &CopyUnless32, &Weigh, &Lay,  &Widen,  &Narrow};

const RowRoad& FastRows() {
    static const RowRoad& fast = HasAvx2() ? kAvx2Rows : kPlainRows;
    return fast;
}

// What is there already is copied to double it.
void RepeatBytes(std::uint8_t* to, std::size_t period, std::size_t count) {
    for (std::size_t done = period; done < count; done *= 2)
        std::memcpy(to + done, to, count - done < done ? count - done : done);
}

} // namespace kel::platform
