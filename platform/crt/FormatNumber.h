#pragma once

#include "platform/crt/FormatConversion.h"

#include <cstdint>

/// Numbers as text: the parts of a formatted number, in ASCII, without the spaces around it.
namespace kel::platform {

/// Significant digits and decimals past which a double has nothing but zeros: the smallest one has 1,074 decimals.
constexpr int kExactDigits = 1100;

/// Written from left to right: prefix, leading zeros, body, inner zeros, tail. Zeros beyond what a number can have are
/// counted, not stored, so that every precision fits.
struct NumberField {
    char prefix[3]; ///< sign, or "0x", or both
    int prefixLength = 0;
    int leadingZeros = 0;
    const char* body = buffer;
    int bodyLength = 0;
    int innerZeros = 0;
    char tail[8]; ///< the exponent
    int tailLength = 0;
    bool zeroFill = false; ///< the width is reached by zeros behind the prefix
    // 309 digits, a point and kExactDigits decimals are the most; left unset until written.
    char buffer[309 + 1 + kExactDigits + 2];

    NumberField() {} // NOLINT(modernize-use-equals-default): a defaulted one would clear the buffer in an aggregate
    NumberField(const NumberField&) = delete;
    NumberField& operator=(const NumberField&) = delete;

    void AddPrefix(char character) { prefix[prefixLength++] = character; }
    [[nodiscard]] std::int64_t Length() const {
        return std::int64_t{prefixLength} + leadingZeros + bodyLength + innerZeros + tailLength;
    }
};

/// Renders the types d, i, u, o, x and X; @p value is extended from its size with its sign for d and i, with zeros
/// otherwise.
void RenderInteger(const Conversion& conversion, std::int64_t value, NumberField& field);

/// Renders the type p.
void RenderPointer(const Conversion& conversion, std::uintptr_t value, NumberField& field);

/// Renders the types e, f, g and a in either case.
void RenderDouble(const Conversion& conversion, double value, NumberField& field);

} // namespace kel::platform
