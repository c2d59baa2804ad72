#pragma once

#include <cstdint>
#include <random>
#include <string>

namespace kel::bench {

/// The one source of input data; the same seed gives the same data on every machine.
class Random {
public:
    explicit Random(std::uint64_t seed) : m_engine(seed) {}

    /// @return a number below @p bound.
    std::uint32_t Below(std::uint32_t bound) { return static_cast<std::uint32_t>(m_engine() % bound); }

    /// @return @p length lower-case letters.
    std::string Letters(std::size_t length) {
        std::string text;
        for (std::size_t i = 0; i < length; ++i)
            text += static_cast<char>('a' + Below(26));
        return text;
    }

private:
    std::mt19937_64 m_engine;
};

} // namespace kel::bench
