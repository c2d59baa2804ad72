#include <doctest/doctest.h>
#include <kelcore/platform.h>

#include <charconv>
#include <climits>
#include <cmath>
#include <cstdarg>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using Units = std::basic_string<WCHAR>;

Units Wide(const char* text) {
    return Units(text, text + std::strlen(text));
}

// Units past ASCII as their numbers in braces.
std::string Shown(const Units& units) {
    std::string shown;
    for (const WCHAR unit : units)
        shown += unit < 0x7F && unit != 0 ? std::string(1, static_cast<char>(unit)) : "{" + std::to_string(unit) + "}";
    return shown;
}

int Print(WCHAR* text, std::size_t count, const WCHAR* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int result = _vsnwprintf(text, count, format, arguments);
    va_end(arguments);
    return result;
}

struct Case {
    std::string format;
    std::string expected;
    std::string result;
};

// Formats at once; what is checked is the text of the units that the result counts.
template <class... Arguments>
Case Row(const char* format, const char* expected, Arguments... arguments) {
    Units text(2000, '~');
    const int length = Print(text.data(), text.size(), Wide(format).c_str(), arguments...);
    if (length < 0)
        return {format, expected, "does not fit"};
    const bool terminated = text[static_cast<std::size_t>(length)] == 0;
    text.resize(static_cast<std::size_t>(length));
    return {format, expected, Shown(text) + (terminated ? "" : " without terminator")};
}

void Check(const std::vector<Case>& cases) {
    for (const Case& row : cases) {
        CAPTURE(row.format);
        CHECK(row.result == row.expected);
    }
}

const Units kWide = Wide("wide");
const WCHAR* const kW = kWide.c_str();
const double kInfinity = std::numeric_limits<double>::infinity();
const double kNan = std::numeric_limits<double>::quiet_NaN();

// Decimal rounding of the exact value, a tie away from zero, done on paper: the oracle.
std::string Rounded(double value, int decimals) {
    char exact[1500];
    char* const end = std::to_chars(exact, exact + sizeof exact, value, std::chars_format::fixed, 1100).ptr;
    std::string text(exact, end);
    const std::size_t kept = text.find('.') + 1 + static_cast<std::size_t>(decimals);
    const bool up = text[kept] >= '5';
    text.resize(kept);
    if (decimals == 0)
        text.pop_back();
    for (std::size_t i = text.size(); up && i-- > 0;) {
        if (text[i] == '.')
            continue;
        if (text[i] != '9') {
            ++text[i];
            return text;
        }
        text[i] = '0';
    }
    return up ? "1" + text : text;
}

} // namespace

TEST_CASE("integers take every flag, width, precision and size") {
    Check({
        Row("%d %i %u", "-5 5 4294967295", -5, 5, -1),
        Row("%i %d", "-2147483648 0", INT_MIN, 0),
        Row("%x %X %o %#x %#X %#o", "ff FF 10 0xff 0XFF 010", 255, 255, 8, 255, 255, 8),
        Row("%#x %#o %.0d| %.0x| %+.0d|", "0 0 | | +|", 0, 0, 0, 0, 0),
        Row("%5d|%-5d|%05d|%-05d|", "   42|42   |00042|42   |", 42, 42, 42, 42),
        Row("%+d % d %+ d %+u % x", "+42  42 +42 42 2a", 42, 42, 42, 42, 42),
        Row("%.5d %8.5d %.3d %+.3d", "00042   -00042 -001 +001", 42, -42, -1, 1),
        Row("%#010x %#.8x %#-10x|%#10X %#08o %#.3o", "0x000000ff 0x000000ff 0xff      |      0XFF 00000010 010", 255,
            255, 255, 255, 8, 8),
        Row("%*d|%*d|%.*d|%.*d|%0*d|", "    42|42    |000042|42|42    |", 6, 42, -6, 42, 6, 42, -6, 42, -6, 42),
        Row("%hd %hu %hx %hhx", "4464 65535 2345 2345", 70000, -1, 0x12345, 0x12345),
        Row("%ld %lu %lx %Ld %I32d %wd", "-5 4294967295 ff 5 -5 6", -5L, 0xFFFFFFFFUL, 255L, 5, -5, 6),
        Row("%lld %I64d %llx %I64u %jd", "-5000000000 -5000000000 123456789abc 18446744073709551615 5", -5000000000LL,
            -5000000000LL, 0x123456789ABCLL, ~0ULL, 5LL),
        Row("%I64d %lli", "-9223372036854775808 9223372036854775807", LLONG_MIN, LLONG_MAX),
        Row("%Id %zu %td", "-5 5 -6", static_cast<std::ptrdiff_t>(-5), static_cast<std::size_t>(5),
            static_cast<std::ptrdiff_t>(-6)),
    });
}

TEST_CASE("doubles print exactly, ties away from zero, with three exponent digits") {
    Check({
        Row("%lf %f %.2f %.0f %#.0f %.f", "1.500000 -0.500000 2.67 10 1. 3", 1.5, -0.5, 2.675, 9.5, 1.0, 2.5),
        Row("%.0f %.0f %.0f %.1f %.2f", "1 2 3 0.3 0.38", 0.5, 1.5, 2.5, 0.25, 0.375),
        Row("%010.3f|%-10.3f|%+.3f|% .3f|%.3f", "-00001.500|-1.500    |+0.000| 1.000|-0.000", -1.5, -1.5, 0.0, 1.0,
            -0.0),
        Row("%.20f %.3f %.1f", "0.10000000000000000555 99999999999999991611392.000 1125899906842624.3", 0.1, 1e23,
            1125899906842624.25),
        Row("%e %E %e %.0e %#.0e %.2e", "1.000000e+000 1.234568E+004 1.000000e+100 3e+001 1.e+000 -0.00e+000", 1.0,
            12345.678, 1e100, 25.0, 1.0, -0.0),
        Row("%g %G %g %g %#g %.17g", "1e-010 1E-010 100000 1e+006 1.00000 0.10000000000000001", 1e-10, 1e-10, 1e5, 1e6,
            1.0, 0.1),
        Row("%g %g %g %g %.3g %.3g %#.3g", "0.0001 1e-005 123457 1e+006 2.13 2.38 0.00", 1e-4, 1e-5, 123456.5, 999999.5,
            2.125, 2.375, 0.0),
        Row("%.50g", "4.9406564584124654417656879286822137236505980261432e-324", 5e-324),
        Row("%a %A %a", "0x1.0000000000000p+0 0X1.8000000000000P+0 0x0.0000000000001p-1022", 1.0, 1.5, 5e-324),
        Row("%.3a %.0a %#.0a %.1a %.14a %.2a", "0x1.99ap-4 0x2p+0 0x1.p+0 0x1.1p+0 0x1.999999999999a0p-4 0x2.00p+0",
            0.1, 1.5, 1.0, 0x1.08p0, 0.1, 1.999),
        Row("%24a|%024a|", "   -0x1.999999999999ap-4|-0x0001.999999999999ap-4|", -0.1, -0.1),
        Row("%f %f %f %f", "1.#INF00 -1.#INF00 1.#QNAN0 -1.#IND00", kInfinity, -kInfinity, kNan, -kNan),
        Row("%.1f %.2f %.3f %.0f %.10f", "1.$ 1.#R 1.#IO 1 1.#INF000000", kInfinity, kNan, kInfinity, kInfinity,
            kInfinity),
        Row("%e %g %a %+10f|%010f", "1.#INF00e+000 1.#INF 0x1.#INF000000000p+0  +1.#INF00|001.#INF00", kInfinity,
            kInfinity, kInfinity, kInfinity, kInfinity),
        Row("%.1500f", ("0.5" + std::string(1499, '0')).c_str(), 0.5),
        Row("%.1300e", ("5." + std::string(1300, '0') + "e-001").c_str(), 0.5),
    });
}

TEST_CASE("any double at any precision is the exact value rounded") {
    constexpr unsigned kSeed = 20;
    CAPTURE(kSeed);
    std::mt19937_64 random(kSeed);
    for (int i = 0; i < 3000; ++i) {
        const int decimals = static_cast<int>(random() % 24);
        // Every other value is a short binary fraction, so that ties are met; the rest are of all sizes in use.
        const double fraction = static_cast<double>(random() % 100000) / static_cast<double>(1 << (random() % 20));
        const double any = std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 200) - 140);
        const double value = i % 2 == 0 ? fraction : any;
        const std::string expected = Rounded(value, decimals);
        CHECK(Row("%.*f", "", decimals, value).result == expected);
    }
}

TEST_CASE("texts and characters are wide or narrow by type and size") {
    Check({
        Row("%s %ls %ws %S %hs %lS %hS", "wide wide wide narrow narrow wide narrow", kW, kW, kW, "narrow", "narrow", kW,
            "narrow"),
        Row("%10s|%-10s|%010s|%.3s|%.0s|%10.2S|", "      wide|wide      |000000wide|wid||        na|", kW, kW, kW, kW,
            kW, "narrow"),
        Row("%.*s|%.*s|%*s|", "wi|wide|wide   |", 2, kW, -1, kW, -7, kW),
        Row("%s %S %.3s|%10s|", "(null) (null) (nu|    (null)|", static_cast<WCHAR*>(nullptr),
            static_cast<char*>(nullptr), static_cast<WCHAR*>(nullptr), static_cast<WCHAR*>(nullptr)),
        Row("%c%C%hc%lc%wc %5c|%-5c|%05c|", "ABCDE     A|A    |0000A|", 'A', 'B', 'C', 'D', 'E', 'A', 'A', 'A'),
        Row("%c%c %c", "{9786}{0} {9786}", 0x263A, 0, 0x1263A),
    });
    // Nothing behind the precision is read, so no terminator is needed there.
    const WCHAR open[] = {'a', 'b', 'c'};
    const char narrow[] = {'d', 'e', 'f'};
    Check({Row("%.3s%.3S", "abcdef", open, narrow)});
}

TEST_CASE("pointers show all their digits") {
    const std::string zeros(2 * sizeof(void*) - 4, '0');
    const auto pointer = reinterpret_cast<void*>(static_cast<std::uintptr_t>(0xAB12));
    Check({
        Row("%p", (zeros + "AB12").c_str(), pointer),
        Row("%20p|", (std::string(16 - zeros.size(), ' ') + zeros + "AB12|").c_str(), pointer),
        Row("%#p", ("0X" + zeros + "AB12").c_str(), pointer),
    });
}

TEST_CASE("what is no conversion is left out up to the first unit that cannot belong to one") {
    Check({
        Row("%%|%d%%", "%|5%", 5),
        Row("abc%", "abc"),
        Row("a%kb %5k| %-.3k|", "akb k| k|"),
        Row("%5%|", "|"),
        Row("%.-5d|%3*d|%1$d|%I6d|%I|", "-5d|*d|$d|I6d|I|", 4, 5),
        Row("%h|%l", "|"),
    });
}

TEST_CASE("a result that does not fit fills the buffer, and one that just fits has no terminator") {
    for (const char* format : {"%s%2i", "wide%2i"}) {
        for (std::size_t count = 0; count <= 8; ++count) {
            CAPTURE(format);
            CAPTURE(count);
            Units text(9, '~');
            const bool takesText = format[0] == '%';
            const int length = takesText ? Print(text.data(), count, Wide(format).c_str(), kW, 7)
                                         : Print(text.data(), count, Wide(format).c_str(), 7);
            const Units whole = Wide("wide 7") + WCHAR(0);
            CHECK(length == (count < 6 ? -1 : 6));
            CHECK(Shown(text) == Shown(whole.substr(0, count) + Units(9 - std::min<std::size_t>(count, 7), '~')));
        }
    }
    Units text(9, '~');
    CHECK(Print(text.data(), 8, Wide("%20d").c_str(), 7) == -1);
    CHECK(Shown(text) == "        ~");
    CHECK(Print(nullptr, 0, Wide("%s%5i").c_str(), kW, 7) == 9);
    CHECK(_scwprintf(Wide("%s%5i").c_str(), kW, 7) == 9);
    CHECK(_snwprintf(text.data(), 9, Wide("%s%2i").c_str(), kW, 7) == 6);
}

TEST_CASE("beyond the Windows library, F is known, n writes nothing and narrow text is in the code page") {
    // There WCHAR is wchar_t.
    if (std::is_same_v<WCHAR, wchar_t> || GetACP() != 65001)
        return;
    int written = 77;
    Check({
        Row("%F a%nb", "1.500000 ab", 1.5, &written),
        Row("%S|%3S|%.2S|%.3S|%.4S", "{233}|  {233}|a|a{233}|a{233}b", "\xC3\xA9", "\xC3\xA9", "a\xC3\xA9", "a\xC3\xA9",
            "a\xC3\xA9"
            "b"),
        Row("%08.5d %#.0o", "  -00042 0", -42, 0),
        Row("%.600d", ("0" + std::string(598, '0') + "7").c_str(), 7),
        // Wine's own buffer is too short for this one.
        Row("%0600d", (std::string(599, '0') + "7").c_str(), 7),
    });
    CHECK(written == 77);
}
