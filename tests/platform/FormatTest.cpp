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

// The text of the units that the result counts.
template <class... Arguments>
std::string Printed(const char* format, Arguments... arguments) {
    Units text(2000, '~');
    const int length = Print(text.data(), text.size(), Wide(format).c_str(), arguments...);
    if (length < 0)
        return "does not fit";
    const bool terminated = text[static_cast<std::size_t>(length)] == 0;
    text.resize(static_cast<std::size_t>(length));
    return Shown(text) + (terminated ? "" : " without terminator");
}

template <class... Arguments>
void Prints(const char* format, const std::string& expected, Arguments... arguments) {
    CHECK_MESSAGE(Printed(format, arguments...) == expected, format);
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
    Prints("%d %i %u", "-5 5 4294967295", -5, 5, -1);
    Prints("%i %d", "-2147483648 0", INT_MIN, 0);
    Prints("%x %X %o %#x %#X %#o", "ff FF 10 0xff 0XFF 010", 255, 255, 8, 255, 255, 8);
    Prints("%#x %#o %.0d| %.0x| %+.0d|", "0 0 | | +|", 0, 0, 0, 0, 0);
    Prints("%5d|%-5d|%05d|%-05d|", "   42|42   |00042|42   |", 42, 42, 42, 42);
    Prints("%+d % d %+ d %+u % x", "+42  42 +42 42 2a", 42, 42, 42, 42, 42);
    Prints("%.5d %8.5d %.3d %+.3d", "00042   -00042 -001 +001", 42, -42, -1, 1);
    Prints("%#010x %#.8x %#-10x|%#08o", "0x000000ff 0x000000ff 0xff      |00000010", 255, 255, 255, 8);
    Prints("%*d|%*d|%.*d|%.*d|%0*d|", "    42|42    |000042|42|42    |", 6, 42, -6, 42, 6, 42, -6, 42, -6, 42);
    Prints("%hd %hu %hx %hhx", "4464 65535 2345 2345", 70000, -1, 0x12345, 0x12345);
    Prints("%ld %lu %lx %Ld %I32d %wd", "-5 4294967295 ff 5 -5 6", -5L, 0xFFFFFFFFUL, 255L, 5, -5, 6);
    Prints("%lld %llx %I64u %jd", "-5000000000 123456789abc 18446744073709551615 5", -5000000000LL, 0x123456789ABCLL,
           ~0ULL, 5LL);
    Prints("%I64d %lli", "-9223372036854775808 9223372036854775807", LLONG_MIN, LLONG_MAX);
    Prints("%Id %zu %td", "-5 5 -6", std::ptrdiff_t{-5}, std::size_t{5}, std::ptrdiff_t{-6});
}

TEST_CASE("doubles print exactly, ties away from zero, with three exponent digits") {
    Prints("%lf %f %.2f %.0f %#.0f %.f", "1.500000 -0.500000 2.67 10 1. 3", 1.5, -0.5, 2.675, 9.5, 1.0, 2.5);
    Prints("%010.3f|%-10.3f|%+.3f|% .3f|%.3f", "-00001.500|-1.500    |+0.000| 1.000|-0.000", -1.5, -1.5, 0., 1., -0.);
    Prints("%e %E %.0e %#.0e %.2e", "1.000000e+000 1.000000E+100 3e+001 1.e+000 -0.00e+000", 1., 1e100, 25., 1., -0.);
    Prints("%g %g %g %g %.3g %#.3g", "0.0001 1e-005 123457 1e+006 2.13 0.00", 1e-4, 1e-5, 123456.5, 999999.5, 2.125,
           0.);
    Prints("%.50g", "4.9406564584124654417656879286822137236505980261432e-324", 5e-324);
    Prints("%A %a", "0X1.8000000000000P+0 0x0.0000000000001p-1022", 1.5, 5e-324);
    Prints("%.3a %.0a %#.0a %.1a", "0x1.99ap-4 0x2p+0 0x1.p+0 0x1.1p+0", 0.1, 1.5, 1.0, 0x1.08p0);
    Prints("%24a|%024a|", "   -0x1.999999999999ap-4|-0x0001.999999999999ap-4|", -0.1, -0.1);
    Prints("%f %f %f %f", "1.#INF00 -1.#INF00 1.#QNAN0 -1.#IND00", kInfinity, -kInfinity, kNan, -kNan);
    Prints("%.1f %.2f %.3f %.0f", "1.$ 1.#R 1.#IO 1", kInfinity, kNan, kInfinity, kInfinity);
    Prints("%e %g %a", "1.#INF00e+000 1.#INF 0x1.#INF000000000p+0", kInfinity, kInfinity, kInfinity);
    Prints("%.1500f", "0.5" + std::string(1499, '0'), 0.5);
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
        CHECK(Printed("%.*f", decimals, value) == Rounded(value, decimals));
    }
}

TEST_CASE("texts and characters are wide or narrow by type and size") {
    const char* const narrow = "narrow";
    Prints("%s %ls %ws %S %hs %lS %hS", "wide wide wide narrow narrow wide narrow", kW, kW, kW, narrow, narrow, kW,
           narrow);
    Prints("%10s|%-10s|%010s|%.3s|%.0s|", "      wide|wide      |000000wide|wid||", kW, kW, kW, kW, kW);
    Prints("%.*s|%.*s|%*s|%10.2S|", "wi|wide|wide   |        na|", 2, kW, -1, kW, -7, kW, narrow);
    WCHAR* const none = nullptr;
    Prints("%s %S %.3s|%10s|", "(null) (null) (nu|    (null)|", none, static_cast<char*>(nullptr), none, none);
    Prints("%c%C%hc%lc%wc %5c|%-5c|%05c|", "ABCDE     A|A    |0000A|", 'A', 'B', 'C', 'D', 'E', 'A', 'A', 'A');
    Prints("%c%c %c", "{9786}{0} {9786}", 0x263A, 0, 0x1263A);
    // Nothing behind the precision is read, so no terminator is needed there.
    const WCHAR open[] = {'a', 'b', 'c'};
    const char openNarrow[] = {'d', 'e', 'f'};
    Prints("%.3s%.3S", "abcdef", open, openNarrow);
}

TEST_CASE("pointers show all their digits, and what is no conversion is left out up to the first unit outside of one") {
    const std::string digits = std::string(2 * sizeof(void*) - 4, '0') + "AB12";
    const auto pointer = reinterpret_cast<void*>(static_cast<std::uintptr_t>(0xAB12));
    Prints("%p %#p", digits + " 0X" + digits, pointer, pointer);
    Prints("%20p|", std::string(20 - digits.size(), ' ') + digits + "|", pointer);

    Prints("%%|%d%%", "%|5%", 5);
    Prints("abc%", "abc");
    Prints("a%kb %5k| %-.3k|", "akb k| k|");
    Prints("%5%|", "|");
    Prints("%.-5d|%3*d|%1$d|%I6d|%I|", "-5d|*d|$d|I6d|I|", 4, 5);
    Prints("%h|%l", "|");
}

TEST_CASE("a result that does not fit fills the buffer, and one that just fits has no terminator") {
    const Units whole = Wide("wide 7") + WCHAR(0), inserted = Wide("%s%2i"), plain = Wide("wide%2i");
    for (std::size_t count = 0; count <= 8; ++count) {
        const Units filled = whole.substr(0, count) + Units(9 - std::min<std::size_t>(count, 7), '~');
        for (const bool inserts : {true, false}) {
            INFO(count, " ", inserts);
            Units text(9, '~');
            const int length = inserts ? Print(text.data(), count, inserted.c_str(), kW, 7)
                                       : Print(text.data(), count, plain.c_str(), 7);
            CHECK(length == (count < 6 ? -1 : 6));
            CHECK(Shown(text) == Shown(filled));
        }
    }
    CHECK(Print(nullptr, 0, inserted.c_str(), kW, 7) == 6);
    CHECK(_scwprintf(inserted.c_str(), kW, 7) == 6);
    Units text(9, '~');
    CHECK(_snwprintf(text.data(), 9, inserted.c_str(), kW, 7) == 6);
}

TEST_CASE("beyond the Windows library, F is known, n writes nothing and narrow text is in the code page") {
    // There WCHAR is wchar_t.
    if (std::is_same_v<WCHAR, wchar_t> || GetACP() != 65001)
        return;
    int written = 77;
    Prints("%F a%nb", "1.500000 ab", 1.5, &written);
    CHECK(written == 77);
    const char* const narrow = "a\u00E9b";
    Prints("%S|%5S|%.2S|%.3S|%.4S", "a{233}b|  a{233}b|a|a{233}|a{233}b", narrow, narrow, narrow, narrow, narrow);
}
