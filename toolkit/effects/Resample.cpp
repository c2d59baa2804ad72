#include "toolkit/effects/Effect.h"
#include "toolkit/effects/Resampling.h"
#include "toolkit/effects/Rework.h"

#include <algorithm>
#include <atomic>
#include <vector>

namespace kel::toolkit::effects {
namespace resampling {
namespace {

std::atomic<const Road*> taken = nullptr;

const Road& CurrentRoad() {
    if (const Road* const road = taken.load(std::memory_order_relaxed))
        return *road;
    static const Road* const quickest = Avx2Road();
    return quickest ? *quickest : kPortableRoad;
}

/// Holds what an axis points to. Shrinking weighs by the overlap, enlarging by the distance of the middles (beyond the
/// ends, they go on).
struct Plan {
    std::size_t taps;
    std::vector<std::size_t> first;
    std::vector<std::int16_t> weights;

    Plan(int from, int to);
    Axis View() const { return {first.size(), taps, first.data(), weights.data()}; }
};

/// Numbers of @p to parts of the old ones in which everything is whole: old n covers `n * to` to `(n + 1) * to`, new n
/// `n * from` to `(n + 1) * from`.
std::int64_t Overlap(std::int64_t old, std::int64_t fresh, std::int64_t from, std::int64_t to) {
    return std::min((old + 1) * to, (fresh + 1) * from) - std::max(old * to, fresh * from);
}

// Weights are rounded as sums, so that they add up to the whole.
void WeighOverlaps(Plan& plan, std::size_t fresh, std::int64_t from, std::int64_t to) {
    const auto at = static_cast<std::int64_t>(fresh);
    const std::int64_t first = at * from / to;
    plan.first[fresh] = static_cast<std::size_t>(first);
    std::int16_t* weight = plan.weights.data() + fresh * plan.taps;
    std::int64_t covered = 0;
    std::int64_t given = 0;
    for (std::int64_t old = first; covered < from; ++old) {
        covered += Overlap(old, at, from, to);
        const std::int64_t upTo = (covered * 2 * kWhole + from) / (2 * from);
        *weight++ = static_cast<std::int16_t>(upTo - given);
        given = upTo;
    }
}

// The middle of new n is at `((2n + 1) * from - to) / 2to`, counted from the middle of the first old one.
void WeighNeighbours(Plan& plan, std::size_t fresh, std::int64_t from, std::int64_t to) {
    const std::int64_t place = (2 * static_cast<std::int64_t>(fresh) + 1) * from - to;
    const std::int64_t at = std::clamp<std::int64_t>(place, 0, (from - 1) * 2 * to);
    const std::int64_t second = (at % (2 * to) * kWhole + to) / (2 * to);
    plan.first[fresh] = static_cast<std::size_t>(at / (2 * to));
    plan.weights[fresh * 2] = static_cast<std::int16_t>(kWhole - second);
    plan.weights[fresh * 2 + 1] = static_cast<std::int16_t>(second);
}

/// An even number that is enough for every new row. Whole factors begin and end with a row.
std::size_t TapsOf(int from, int to) {
    const int touched = from <= to ? 2 : from / to + (from % to == 0 ? 0 : 2);
    return static_cast<std::size_t>((touched + 1) / 2) * 2;
}

Plan::Plan(int from, int to)
    : taps(TapsOf(from, to)), first(static_cast<std::size_t>(to)), weights(first.size() * taps) {
    for (std::size_t fresh = 0; fresh < first.size(); ++fresh)
        (from > to ? WeighOverlaps : WeighNeighbours)(*this, fresh, from, to);
}

/// Old rows by their numbers from the top; the last one stands for all beyond it, whose weights are 0.
void CollectRows(const DibLock& from, std::size_t first, std::vector<const Byte*>& rows) {
    const auto last = static_cast<std::size_t>(from.Layout().height - 1);
    for (std::size_t i = 0; i < rows.size(); ++i)
        rows[i] = from.Row(static_cast<int>(std::min(first + i, last)));
}

void Resample(const DibLock& from, const DibLock& to) {
    const Road& road = CurrentRoad();
    const Plan across(from.Layout().width, to.Layout().width);
    const Plan down(from.Layout().height, to.Layout().height);
    const auto channels = static_cast<std::size_t>(from.Layout().depth / 8);
    const std::size_t count = channels * static_cast<std::size_t>(from.Layout().width);
    std::vector<std::int16_t> row(count + 4 * (across.taps + 1));
    std::vector<const Byte*> rows(down.taps);
    for (std::size_t y = 0; y < down.first.size(); ++y) {
        CollectRows(from, down.first[y], rows);
        road.weighRows(rows.data(), down.weights.data() + y * down.taps, down.taps, count, row.data());
        road.weighPixels(row.data(), across.View(), channels, to.Row(static_cast<int>(y)));
    }
}

} // namespace

void TakeRoad(const Road* road) {
    taken.store(road, std::memory_order_relaxed);
}

} // namespace resampling

HRESULT ResampleTo(PackedDib& picture, WORD width, WORD height) {
    const int newWidth = std::max<int>(width, 1);
    const int newHeight = std::max<int>(height, 1);
    if (newWidth == picture.Layout().width && newHeight == picture.Layout().height)
        return S_OK;
    return Remake(picture, newWidth, newHeight, resampling::Resample);
}

} // namespace kel::toolkit::effects
