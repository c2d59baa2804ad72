#include "bitmap/pixels/Roads.h"

#if defined(__x86_64__) || defined(__i386__)

#include "bitmap/pixels/Vectors32.h"

namespace kel::pixels {
namespace {

inline const Road& Rest() {
    return *Sse41Road();
}

} // namespace
} // namespace kel::pixels

#include "bitmap/pixels/Kernels.h"

const kel::pixels::Road* kel::pixels::Avx2Road() {
    static constexpr Road road = {
        "avx2",         &Shade,         &ShadeMasked,     &CombineKey24Run, &CombineKey32Run,
        &GreyOut24Run,  &GreyOut32Run,  &Contains24Run,   &Contains32Run,   &ComplementRun,
        &OrBitPlaneRun, &KeyToAlphaRun, &KeyToOverlayRun,
    };
    return __builtin_cpu_supports("avx2") ? &road : nullptr;
}

#else

const kel::pixels::Road* kel::pixels::Avx2Road() {
    return nullptr;
}

#endif
