#pragma once

#include <unistd.h>

#include <cstdio>
#include <utility>

namespace kel::platform {

/// Owns a host descriptor.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int descriptor) : m_descriptor(descriptor) {}
    Descriptor(Descriptor&& other) noexcept : m_descriptor(other.Release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }
    ~Descriptor() {
        if (m_descriptor != -1)
            close(m_descriptor);
    }

    explicit operator bool() const { return m_descriptor != -1; }
    int Get() const { return m_descriptor; }
    int Release() {
        const int descriptor = m_descriptor;
        m_descriptor = -1;
        return descriptor;
    }

private:
    int m_descriptor = -1;
};

/// The path by which the host reaches what a descriptor of this process stands for.
class DescriptorPath {
public:
    explicit DescriptorPath(int descriptor) { std::snprintf(m_text, sizeof m_text, "/proc/self/fd/%d", descriptor); }
    const char* Text() const { return m_text; }

private:
    char m_text[32];
};

} // namespace kel::platform
