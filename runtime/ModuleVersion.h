#pragma once

#include <kelcore/text.h>

namespace kel {

/// A product version as its two halves; zeros for a file without one.
struct ModuleVersion {
    unsigned long ms = 0;
    unsigned long ls = 0;

    bool operator==(const ModuleVersion&) const = default;

    /// The four parts, as they are printed.
    int Major() const { return static_cast<int>(ms >> 16); }
    int Minor() const { return static_cast<int>(ms & 0xFFFF); }
    int Build() const { return static_cast<int>(ls >> 16); }
    int Revision() const { return static_cast<int>(ls & 0xFFFF); }
};

} // namespace kel
