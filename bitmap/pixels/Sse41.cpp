#include "bitmap/pixels/Roads.h"

#if defined(__x86_64__) || defined(__i386__)

#include "bitmap/pixels/Vectors16.h"

namespace kel::pixels {
namespace {

inline const Road& Rest() {
    return kPortableRoad;
}

} // namespace
} // namespace kel::pixels

#include "bitmap/pixels/Kernels.h"

const kel::pixels::Road* kel::pixels::Sse41Road() {
    static constexpr Road road = {
        "sse4.1",       &Shade,         &ShadeMasked,     &CombineKey24Run, &CombineKey32Run,
        &GreyOut24Run,  &GreyOut32Run,  &Contains24Run,   &Contains32Run,   &ComplementRun,
        &OrBitPlaneRun, &KeyToAlphaRun, &KeyToOverlayRun,
    };
    return __builtin_cpu_supports("sse4.1") ? &road : nullptr;
}

#else

const kel::pixels::Road* kel::pixels::Sse41Road() {
    return nullptr;
}

#endif
