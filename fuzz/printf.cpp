// The 16-bit printf language: format and texts from the input. A result is the same in every room that it fits into,
// nothing is written beyond the room, and integers and hexadecimal doubles with all their digits print as on the host.

#include <kelcore/platform.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <string>

namespace {

using Units = std::basic_string<WCHAR>;

constexpr std::size_t kMostArguments = 16;
constexpr std::size_t kRoom = 300;
constexpr WCHAR kMark = 0xBEEF;

void Require(bool holds) {
    if (!holds)
        __builtin_trap();
}

Units UnitsOf(const std::uint8_t* data, std::size_t size) {
    Units units;
    for (std::size_t i = 0; i + 1 < size; i += 2)
        units += static_cast<WCHAR>(data[i] | data[i + 1] << 8);
    return units;
}

// Every argument may be read as a text of either width, as a number or as a width: a short text's address serves all.
int Print(WCHAR* to, std::size_t room, const Units& format, const WCHAR* text) {
    return _snwprintf(to, room, format.c_str(), text, text, text, text, text, text, text, text, text, text, text, text,
                      text, text, text, text, 0.0, -1.5, 1e300, 2.5e-310, 1.0 / 3, 1e17, 123456.789, -0.0);
}

// A conversion whose flags, width, precision and type come from the first bytes, its value from the others.
void CompareWithHost(const std::uint8_t* data, std::size_t size) {
    if (size < 12)
        return;
    std::string format = "%";
    for (int i = 0; i < 5; ++i)
        if ((data[0] & 1 << i) != 0)
            format += "-+ #0"[i];
    format += std::to_string(data[1] % 70);
    const char type = "diuoxXaA"[data[3] % 8];
    const bool isDouble = type == 'a' || type == 'A';
    if (isDouble)
        format += "." + std::to_string(13 + data[2] % 20);
    else if (data[2] % 2 != 0)
        format += "." + std::to_string(data[2] % 80);
    format += (isDouble ? "" : "ll") + std::string(1, type);
    long long integer;
    std::memcpy(&integer, data + 4, sizeof integer);
    const auto fraction = std::bit_cast<double>(integer);
    if (isDouble && !std::isnormal(fraction))
        return;

    char host[200];
    WCHAR own[200];
    const Units units(format.begin(), format.end());
    const int length = isDouble ? std::snprintf(host, sizeof host, format.c_str(), fraction)
                                : std::snprintf(host, sizeof host, format.c_str(), integer);
    Require((isDouble ? _snwprintf(own, std::size(own), units.c_str(), fraction)
                      : _snwprintf(own, std::size(own), units.c_str(), integer)) == length);
    Require(std::equal(host, host + length, own));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CompareWithHost(data, size);
    if (size < 2 || size > 400)
        return 0;
    const std::size_t formatSize = std::min<std::size_t>(data[0] * 2u, size - 1);
    const Units format = UnitsOf(data + 1, formatSize);
    const Units text = UnitsOf(data + 1 + formatSize, size - 1 - formatSize);
    const auto starts =
        std::count_if(format.begin(), format.end(), [](WCHAR unit) { return unit == '%' || unit == '*'; });
    if (static_cast<std::size_t>(starts) > kMostArguments)
        return 0;

    Units first(kRoom + 1, kMark);
    const int length = Print(first.data(), kRoom, format, text.c_str());
    Require(length >= -1 && length <= static_cast<int>(kRoom) && first[kRoom] == kMark);
    if (length < 0)
        return 0;
    Units exact(static_cast<std::size_t>(length) + 1, kMark);
    Require(Print(exact.data(), static_cast<std::size_t>(length), format, text.c_str()) == length);
    Require(exact.back() == kMark && first.compare(0, exact.size() - 1, exact, 0, exact.size() - 1) == 0);
    if (length > 0)
        Require(Print(exact.data(), static_cast<std::size_t>(length) - 1, format, text.c_str()) == -1);
    return 0;
}
