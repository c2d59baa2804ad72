#pragma once

#include <cstdint>

/// Arithmetic with polynomials over GF(2) modulo that of CRC-32, from which all constants of the checksum follow. They
/// are written reflected: the highest bit is the coefficient of x^0.
namespace kel {

inline constexpr std::uint32_t kCrc32Polynomial = 0xEDB88320; // x^32 is left out

constexpr std::uint32_t TimesX(std::uint32_t value) {
    return (value >> 1) ^ ((value & 1) != 0 ? kCrc32Polynomial : 0);
}

/// x^power mod P, as a factor of carry-less multiplication: the product of two reflected values comes out one bit too
/// low, which this makes up for.
constexpr std::uint64_t FoldingFactor(unsigned power) {
    std::uint32_t value = 0x80000000;
    for (unsigned i = 0; i < power; ++i)
        value = TimesX(value);
    return std::uint64_t{value} << 1;
}

/// P itself in 33 bits.
inline constexpr std::uint64_t kBarrettPolynomial = (std::uint64_t{kCrc32Polynomial} << 1) | 1;

/// x^64 divided by P, without remainder, in 33 bits.
constexpr std::uint64_t BarrettQuotient() {
    std::uint64_t quotient = 0;
    std::uint64_t rest = 1; // bit n is the coefficient of x^(32 - n)
    for (unsigned bit = 0; bit <= 32; ++bit) {
        if ((rest & 1) != 0) {
            quotient |= std::uint64_t{1} << bit;
            rest ^= kBarrettPolynomial;
        }
        rest >>= 1;
    }
    return quotient;
}

} // namespace kel
