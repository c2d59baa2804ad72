#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

namespace kel::platform {

/// Bytes from a file, little-endian, at any alignment.
class Bytes {
public:
    Bytes() = default;
    Bytes(const char* data, std::size_t size) : m_bytes(data, size) {}

    std::size_t Size() const { return m_bytes.size(); }
    const char* Data() const { return m_bytes.data(); }

    /// Whether @p count bytes lie at @p offset; no sum of the two overflows here.
    bool Has(std::size_t offset, std::size_t count) const { return count <= Size() && offset <= Size() - count; }

    /// The value at @p offset, which Has it.
    /// @{
    std::uint16_t Word(std::size_t offset) const { return Load<std::uint16_t>(offset); }
    std::uint32_t DWord(std::size_t offset) const { return Load<std::uint32_t>(offset); }
    /// @}

private:
    template <class T>
    T Load(std::size_t offset) const {
        T value;
        std::memcpy(&value, Data() + offset, sizeof value);
        return value;
    }

    std::string_view m_bytes;
};

} // namespace kel::platform
