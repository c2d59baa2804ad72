#include "Report.h"

#include <algorithm>
#include <cstdio>

namespace kelexamples {

std::string Shown(const WideString& path) {
    // A trail byte of a double-byte page can look like a backslash, so the units are replaced, not the bytes.
    static const WideString kExactly = u"\\\\?\\"_w;
    WideString units = path.substr(path.compare(0, kExactly.size(), kExactly) == 0 ? kExactly.size() : 0);
    std::replace(units.begin(), units.end(), static_cast<unsigned short>('\\'), static_cast<unsigned short>('/'));
    return StdW2A(units);
}

std::string FirstLine(const WideString& message) {
    const std::string text = StdW2A(message);
    return text.substr(0, text.find_first_of("\r\n"));
}

std::string SystemText(unsigned long code) {
    std::string text = String::CreateErrorMessage(code);
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r' || text.back() == '.'))
        text.pop_back();
    return text.empty() ? "error " + std::to_string(code) : text;
}

void FailOn(const char* what, const WideString& path, unsigned long code) {
    throw Failure{std::string(what) + " " + Shown(path) + ": " + SystemText(code)};
}

std::string Counted(unsigned long long count, const char* noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string Bytes(unsigned long long count) {
    if (count < 1024)
        return Counted(count, "byte");
    static const char* const kUnits[] = {"KiB", "MiB", "GiB", "TiB", "PiB", "EiB"};
    double amount = static_cast<double>(count) / 1024;
    std::size_t unit = 0;
    for (; amount >= 1024; ++unit)
        amount /= 1024;
    char text[32];
    std::snprintf(text, sizeof text, "%.1f %s", amount, kUnits[unit]);
    return text;
}

} // namespace kelexamples
