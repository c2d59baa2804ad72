#include "platform/gdi/CosmeticLines.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>

namespace kel::platform {
namespace {

__extension__ typedef __int128 Wide; // holds products of differences of coordinates

/// The pixels first <= i < last.
struct Span {
    std::int64_t first;
    std::int64_t last;
};

/// A line along its longer direction, the major one; counted from its start.
class Walk {
public:
    Walk(POINT from, POINT to)
        : m_from(from), m_isSteep(std::abs(std::int64_t{to.y} - from.y) > std::abs(std::int64_t{to.x} - from.x)),
          m_major(m_isSteep ? std::int64_t{to.y} - from.y : std::int64_t{to.x} - from.x),
          m_minor(m_isSteep ? std::int64_t{to.x} - from.x : std::int64_t{to.y} - from.y) {}

    std::int64_t Length() const { return std::abs(m_major); }

    /// The steps that can lie in a rectangle.
    Span StepsIn(const RECT& within) const {
        const std::int64_t start = m_isSteep ? m_from.y : m_from.x;
        const std::int64_t low = (m_isSteep ? within.top : within.left) - start;
        const std::int64_t high = (m_isSteep ? within.bottom : within.right) - start;
        const std::int64_t first = m_major < 0 ? 1 - high : low;
        const std::int64_t last = m_major < 0 ? 1 - low : high;
        return {std::clamp<std::int64_t>(first, 0, Length()), std::clamp<std::int64_t>(last, 0, Length())};
    }

    /// How far the line has gone aside at a step: halves up or to the left.
    std::int64_t Aside(std::int64_t step) const {
        const Wide doubled = Wide{2} * step * m_minor + Length() - 1;
        const Wide divisor = Wide{2} * Length();
        return static_cast<std::int64_t>(doubled / divisor - (doubled % divisor < 0));
    }

    /// The first step behind @p step that is further aside, at most @p last.
    std::int64_t NextAside(std::int64_t step, std::int64_t last) const {
        if (m_minor == 0)
            return last;
        // The step where the line has gone half a pixel more, or less, than it is aside now.
        const std::int64_t aside = Aside(step);
        const Wide reached = (Wide{2} * aside + (m_minor > 0 ? 1 : -1)) * Length();
        const Wide slope = Wide{2} * m_minor;
        std::int64_t next = static_cast<std::int64_t>(std::clamp<Wide>(reached / slope, step, last));
        while (next < last && Aside(next) == aside)
            ++next;
        return next;
    }

    pixman_box32_t Box(const Span& steps, std::int64_t aside) const {
        const std::int64_t start = m_isSteep ? m_from.y : m_from.x;
        const std::int64_t low = m_major < 0 ? start - steps.last + 1 : start + steps.first;
        const std::int64_t other = (m_isSteep ? m_from.x : m_from.y) + aside;
        const auto major = static_cast<int>(low);
        const auto end = static_cast<int>(low + steps.last - steps.first);
        const auto minor = static_cast<int>(other);
        return m_isSteep ? pixman_box32_t{minor, major, minor + 1, end} : pixman_box32_t{major, minor, end, minor + 1};
    }

private:
    const POINT m_from;
    const bool m_isSteep;
    const std::int64_t m_major;
    const std::int64_t m_minor;
};

} // namespace

Dashes::Dashes(std::vector<std::int64_t> lengths) : m_lengths(std::move(lengths)) {
    if (m_lengths.size() % 2 != 0) {
        const std::vector<std::int64_t> once = m_lengths;
        m_lengths.insert(m_lengths.end(), once.begin(), once.end());
    }
    for (const std::int64_t length : m_lengths)
        m_total += length;
}

Dashes::Piece Dashes::At(std::int64_t distance) const {
    std::int64_t rest = distance % m_total;
    std::size_t i = 0;
    for (; rest >= m_lengths[i]; ++i)
        rest -= m_lengths[i];
    return {i % 2 == 0, m_lengths[i] - rest};
}

LineBoxes PixelsOfLine(POINT from, POINT to, const RECT& within, const Dashes& dashes, std::int64_t& distance) {
    const Walk walk(from, to);
    const Span steps = walk.StepsIn(within);
    LineBoxes boxes;
    for (std::int64_t step = steps.first; step < steps.last;) {
        const std::int64_t level = walk.NextAside(step, steps.last);
        const Dashes::Piece piece =
            dashes.Any() ? dashes.At(distance + step) : Dashes::Piece{true, std::numeric_limits<LONG>::max()};
        const std::int64_t next = std::min(level, step + piece.left);
        (piece.isDash ? boxes.dashes : boxes.gaps).push_back(walk.Box({step, next}, walk.Aside(step)));
        step = next;
    }
    distance += walk.Length();
    return boxes;
}

} // namespace kel::platform
