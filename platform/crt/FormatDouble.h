#pragma once

#include "platform/crt/FormatNumber.h"

#include <bit>

/// What the renderings of doubles share.
namespace kel::platform {

constexpr std::uint64_t kMantissaMask = (std::uint64_t{1} << 52) - 1;

/// The magnitude of a double as mantissa * 2^exponent.
struct DoubleParts {
    std::uint64_t mantissa;
    int exponent;

    explicit DoubleParts(double value) {
        const auto bits = std::bit_cast<std::uint64_t>(value);
        const int biased = static_cast<int>(bits >> 52) & 0x7FF;
        mantissa = (bits & kMantissaMask) | (biased == 0 ? 0 : kMantissaMask + 1);
        exponent = (biased == 0 ? 1 : biased) - 1075;
    }
    /// Whether it is an infinity or NaN, which have no digits.
    [[nodiscard]] bool IsSpecial() const { return exponent == 0x7FF - 1075; }
};

/// Makes the tail an exponent: @p letter, a sign, @p leastDigits digits or more.
void AddExponent(char letter, int exponent, int leastDigits, NumberField& field);

/// Renders the type a, behind its prefix. @param value finite, not negative.
void RenderHexDouble(const Conversion& conversion, double value, NumberField& field);

} // namespace kel::platform
