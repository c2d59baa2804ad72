#pragma once

/// @file
/// What a pixel of one surface is in another.

#include "platform/gdi/Surface.h"

#include <array>
#include <memory>

namespace kel::platform {

/// The colours that stand for the values of device-dependent monochrome surfaces: those of the target's context for
/// its zeros and ones, and that of the source's context: what the source stores for it, all bits of it and one index of
/// a table alone, becomes a one (as Wine has it).
struct MonoColours {
    COLORREF text = RGB(0, 0, 0);
    COLORREF back = RGB(255, 255, 255);
    COLORREF sourceBack = RGB(255, 255, 255);
    bool nearest = false; ///< what is nearer to white becomes a one instead
};

/// Of rows of DIBs, which have no context.
inline constexpr MonoColours kNearestOfTwo{RGB(0, 0, 0), RGB(255, 255, 255), RGB(255, 255, 255), true};

/// From stored pixels of a source to stored pixels of a target.
class ColourMap {
public:
    /// Pixels stay as they are.
    ColourMap() = default;

    /// Both surfaces' tables are referred to.
    ColourMap(const Surface& target, const Surface& source, const MonoColours& mono);

    bool IsSame() const { return m_kind == Kind::Same; }

    std::uint32_t operator()(std::uint32_t value) const {
        switch (m_kind) {
        case Kind::Same:
            return value;
        case Kind::Table:
            return m_known->results[value];
        default:
            return Remembered(value);
        }
    }

private:
    enum class Kind : std::uint8_t { Same, Table, Convert };

    /// What indices become, or results that may be asked for again and what they were made of.
    struct Known {
        std::array<std::uint32_t, 256> results{};
        std::array<std::uint32_t, 256> values{};
        std::array<bool, 256> filled{};
    };

    std::uint32_t Converted(std::uint32_t value) const;
    std::uint32_t Remembered(std::uint32_t value) const;

    Kind m_kind = Kind::Same;
    Surface m_target;
    Surface m_source;
    MonoColours m_mono;
    mutable std::shared_ptr<Known> m_known; // made when it is needed: most jobs change no colour
};

} // namespace kel::platform
