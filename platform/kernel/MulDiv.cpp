#include <kelcore/platform/mappingmodes.h>

#include <cstdint>
#include <cstdlib>
#include <limits>

int WINAPI MulDiv(int number, int numerator, int denominator) {
    if (denominator == 0)
        return -1;
    const std::int64_t product = std::int64_t{number} * numerator;
    const std::int64_t divisor = std::llabs(denominator);
    const std::int64_t result = (std::llabs(product) + divisor / 2) / divisor;
    if (result > std::numeric_limits<int>::max())
        return -1;
    return static_cast<int>((product < 0) == (denominator < 0) ? result : -result);
}
