#include "platform/crt/FormatDouble.h"

#include <algorithm>

namespace kel::platform {
namespace {

constexpr int kHexDecimals = 13;

// The mantissa cut to @p decimals hexadecimal decimals, a tie rounded away from zero; the digit in front of the point
// may become 2.
std::uint64_t RoundedMantissa(std::uint64_t mantissa, int decimals) {
    const int dropped = 4 * (kHexDecimals - decimals);
    if (dropped == 0)
        return mantissa;
    return (mantissa + (std::uint64_t{1} << (dropped - 1))) >> dropped;
}

} // namespace

void RenderHexDouble(const Conversion& conversion, double value, NumberField& field) {
    const char* const alphabet = conversion.type == 'a' ? "0123456789abcdef" : "0123456789ABCDEF";
    const DoubleParts parts(value);
    const int precision = conversion.PrecisionOr(kHexDecimals);
    const int decimals = std::min(precision, kHexDecimals);
    std::uint64_t digits = RoundedMantissa(parts.mantissa, decimals);
    const int point = decimals > 0 || conversion.alternate ? 1 : 0;
    for (int i = decimals; i > 0; --i) {
        field.buffer[point + i] = alphabet[digits & 15];
        digits >>= 4;
    }
    field.buffer[0] = alphabet[digits];
    if (point != 0)
        field.buffer[1] = '.';
    field.bodyLength = 1 + point + decimals;
    field.innerZeros = precision - decimals;
    AddExponent(conversion.type == 'a' ? 'p' : 'P', value == 0 ? 0 : parts.exponent + 52, /*leastDigits*/ 1, field);
}

} // namespace kel::platform
