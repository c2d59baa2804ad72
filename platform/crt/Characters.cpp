#include <kelcore/platform/crt.h>

#include <climits>
#include <cstdlib>
#include <cstring>

namespace {

wint_t Folded(WCHAR unit) {
    if (unit < 0x80)
        return unit >= 'A' && unit <= 'Z' ? unit + 0x20 : unit;
    return towlower(unit);
}

/// Writes the digits and the terminator of @p value.
template <class Unit>
Unit* WriteInteger(__int64 value, Unit* text, int radix) {
    Unit digits[64];
    int count = 0;
    const bool negative = radix == 10 && value < 0;
    auto rest = static_cast<unsigned __int64>(value);
    if (negative)
        rest = 0 - rest;
    const auto base = static_cast<unsigned>(radix);
    do {
        digits[count++] = static_cast<Unit>("0123456789abcdefghijklmnopqrstuvwxyz"[rest % base]);
        rest /= base;
    } while (rest != 0);
    Unit* out = text;
    if (negative)
        *out++ = '-';
    while (count > 0)
        *out++ = digits[--count];
    *out = 0;
    return text;
}

} // namespace

int _wcsnicmp(const WCHAR* left, const WCHAR* right, size_t count) {
    for (; count > 0; --count, ++left, ++right) {
        if (*left != *right) {
            const auto difference = static_cast<int>(Folded(*left)) - static_cast<int>(Folded(*right));
            if (difference != 0)
                return difference;
        }
        if (*left == 0)
            break;
    }
    return 0;
}

int _wcsicmp(const WCHAR* left, const WCHAR* right) {
    return _wcsnicmp(left, right, SIZE_MAX);
}

int _mbscmp(const unsigned char* left, const unsigned char* right) {
    return std::strcmp(reinterpret_cast<const char*>(left), reinterpret_cast<const char*>(right));
}

char* _i64toa(__int64 value, char* text, int radix) {
    return WriteInteger(value, text, radix);
}

WCHAR* _i64tow(__int64 value, WCHAR* text, int radix) {
    return WriteInteger(value, text, radix);
}

__int64 _atoi64(const char* text) {
    return std::strtoll(text, nullptr, 10);
}
