#include "bench/pixels/Painter.h"

#include <algorithm>

namespace {

using namespace kel::bench;
using Runner = std::function<void()>;

Runner Find(Canvas& canvas) {
    return [&canvas] {
        const auto* const begin = reinterpret_cast<const std::uint32_t*>(canvas.source);
        const auto has = [](std::uint32_t pixel) { return (pixel & 0xFFFFFF) == kAbsent; };
        canvas.found = std::any_of(begin, begin + kPixels, has);
    };
}

const Enter<Painter> entered{{"std", "find a colour 32", true, &Find}};

} // namespace
