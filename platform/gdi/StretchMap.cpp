#include "platform/gdi/StretchMap.h"

#include <algorithm>

namespace kel::platform {
namespace {

// Rounded up; the divisor is positive.
std::int64_t CeilingOf(std::int64_t value, std::int64_t divisor) {
    return value <= 0 ? -(-value / divisor) : (value - 1) / divisor + 1;
}

void Normalise(int start, int size, std::int64_t& lowest, std::int64_t& count, bool& mirrored) {
    mirrored = size < 0;
    lowest = mirrored ? std::int64_t{start} + size + 1 : start;
    count = mirrored ? -std::int64_t{size} : size;
}

} // namespace

SourceRange Axis::Grown(std::int64_t index, int bound) const {
    std::int64_t source = (index * fromSize + (fromSize - 1) / 2) / toSize;
    source = from + (fromMirrored ? fromSize - 1 - source : source);
    if (source < 0 || source >= bound)
        return {};
    return {static_cast<int>(source), static_cast<int>(source), false};
}

SourceRange Axis::Shrunk(std::int64_t index, int bound) const {
    const std::int64_t half = (toSize - 1) / 2;
    const bool isSingle = toSize == 1 && !toMirrored && !fromMirrored;
    const std::int64_t least = isSingle && single == Single::NotFirst ? 1 : 0;
    const std::int64_t end = fromSize - (isSingle && single == Single::NotLast ? 1 : 0);
    std::int64_t first = std::max(CeilingOf(index * fromSize - half, toSize), least);
    std::int64_t last = std::min(CeilingOf((index + 1) * fromSize - half, toSize), end) - 1;
    if (fromMirrored) {
        first = from + fromSize - 1 - first;
        last = from + fromSize - 1 - last;
    } else {
        first += from;
        last += from;
    }
    if (std::max(first, last) < 0 || std::min(first, last) >= bound)
        return {};
    const auto inside = [&](std::int64_t value) {
        return static_cast<int>(std::clamp<std::int64_t>(value, 0, bound - 1));
    };
    return {inside(first), inside(last), false};
}

SourceRange Axis::At(int position, int bound) const {
    if (fromSize == 0)
        return {};
    const std::int64_t offset = position - to;
    const std::int64_t index = toMirrored ? toSize - 1 - offset : offset;
    return toSize >= fromSize ? Grown(index, bound) : Shrunk(index, bound);
}

Axis MakeAxis(int to, int toSize, int from, int fromSize) {
    Axis axis;
    Normalise(to, toSize, axis.to, axis.toSize, axis.toMirrored);
    Normalise(from, fromSize, axis.from, axis.fromSize, axis.fromMirrored);
    return axis;
}

} // namespace kel::platform
