#include "toolkit/Budget.h"

#include <charconv>
#include <cstdlib>
#include <cstring>

namespace kel::toolkit {

bool Budget::Allows(const DibLayout& layout) const {
    const std::uint64_t count = std::uint64_t(layout.width) * static_cast<std::uint64_t>(layout.height);
    return layout.TotalBytes() <= bytes && (pixels == 0 || count <= pixels);
}

std::uint64_t EnvironmentBudget() {
    const char* const text = std::getenv("KELCORE_PICTURE_BUDGET");
    std::uint32_t megabytes = 0;
    if (text)
        std::from_chars(text, text + std::strlen(text), megabytes);
    return megabytes == 0 ? Budget::kDefaultBytes : megabytes * Budget::kMegabyte;
}

} // namespace kel::toolkit
