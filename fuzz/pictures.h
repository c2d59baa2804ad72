#pragma once

#include "toolkit/codecs/Codec.h"

#include <cstdint>
#include <cstdlib>

/// One kind of picture file from foreign bytes. A picture that is loaded is whole and within the budget, whichever way
/// up; what is refused as damaged is so both times.
inline void FuzzCodec(const kel::toolkit::Codec& codec, const std::uint8_t* data, std::size_t size) {
    using namespace kel::toolkit;
    constexpr Budget kBudget = {4 * Budget::kMegabyte, 0};
    const Bytes file(data, size);
    if (size == 0 || !codec.sniff(file))
        return;
    for (const bool keepOrientation : {false, true}) {
        LoadJob job{file, kBudget, keepOrientation, {}};
        const SHORT status = codec.load(job);
        if (status != kLoaded && status != kDamaged && status != kOverBudget)
            std::abort();
        if (status != kLoaded)
            continue;
        const DibLock lock(job.picture);
        if (!lock || !kBudget.Allows(lock.Layout()) || ExamineDib(lock.Memory()) != lock.Layout())
            std::abort();
    }
}
