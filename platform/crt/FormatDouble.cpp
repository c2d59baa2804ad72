#include "platform/crt/FormatDouble.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstring>

namespace kel::platform {
namespace {

__extension__ typedef unsigned __int128 Wide;

constexpr std::uint64_t kPowersOfTen[] = {1,
                                          10,
                                          100,
                                          1000,
                                          10000,
                                          100000,
                                          1000000,
                                          10000000,
                                          100000000,
                                          1000000000,
                                          10000000000,
                                          100000000000,
                                          1000000000000,
                                          10000000000000,
                                          100000000000000,
                                          1000000000000000,
                                          10000000000000000,
                                          100000000000000000};
constexpr int kMostScaledDecimals = 17;
// Twice a scaled value below it, the last bit being the rounding one, has 64 bits.
constexpr double kScaledLimit = 9e18;

// The value is mantissa * 2^exponent, and the mantissa is odd or 0.
struct Odd {
    std::uint64_t mantissa;
    int exponent;
};

Odd OddForm(double value) {
    const DoubleParts parts(value);
    if (parts.mantissa == 0)
        return {0, 0};
    const int zeros = std::countr_zero(parts.mantissa);
    return {parts.mantissa >> zeros, parts.exponent + zeros};
}

// Whether @p value lies in the middle between two numbers of @p decimals decimals (of zeros in front of the point, when
// negative), and the lower one's last digit is even: the one case where rounding away from zero and rounding to the
// even digit, which std::to_chars does, part. An odd m over 2^k has exactly k decimals, the last one a 5, so that the
// middle means k = decimals + 1; the lower number's last digit follows from m modulo 4, as powers of 5 are 1 modulo 4.
bool IsTieAboveEven(double value, int decimals) {
    Odd odd = OddForm(value);
    if (odd.mantissa == 0 || -odd.exponent != decimals + 1)
        return false;
    for (int i = decimals; i < 0; ++i) {
        if (odd.mantissa % 5 != 0)
            return false;
        odd.mantissa /= 5;
    }
    return odd.mantissa % 4 == 1;
}

// Writes a value below 2^64 with exactly @p count digits.
void WriteDecimals(char* out, std::uint64_t value, int count) {
    for (int i = count - 1; i >= 0; --i) {
        out[i] = static_cast<char>('0' + value % 10);
        value /= 10;
    }
}

// The value times 10^precision, rounded: mantissa and power make up to 110 bits, so that nothing is lost before the one
// rounding step.
std::uint64_t Scaled(double value, int precision) {
    const DoubleParts parts(value);
    const Wide product = Wide{parts.mantissa} * kPowersOfTen[precision];
    if (parts.exponent >= 0)
        return static_cast<std::uint64_t>(product << parts.exponent);
    if (parts.exponent < -127)
        return 0;
    return (static_cast<std::uint64_t>(product >> (-parts.exponent - 1)) + 1) >> 1;
}

int WriteScaled(double value, int precision, char* out) {
    const std::uint64_t scaled = Scaled(value, precision);
    const std::uint64_t power = kPowersOfTen[precision];
    char* end = std::to_chars(out, out + 20, scaled / power).ptr;
    if (precision > 0) {
        *end = '.';
        WriteDecimals(end + 1, scaled % power, precision);
        end += 1 + precision;
    }
    return static_cast<int>(end - out);
}

int WriteExact(double value, int precision, char* out, std::size_t room) {
    char* end = std::to_chars(out, out + room, value, std::chars_format::fixed, precision).ptr;
    if (IsTieAboveEven(value, precision))
        ++end[-1];
    return static_cast<int>(end - out);
}

void RenderFixed(const Conversion& conversion, double value, NumberField& field) {
    const int precision = conversion.PrecisionOr(6);
    const int stored = std::min(precision, kExactDigits);
    if (stored <= kMostScaledDecimals && value * static_cast<double>(kPowersOfTen[stored]) < kScaledLimit)
        field.bodyLength = WriteScaled(value, stored, field.buffer);
    else
        field.bodyLength = WriteExact(value, stored, field.buffer, sizeof field.buffer);
    if (precision == 0 && conversion.alternate)
        field.buffer[field.bodyLength++] = '.';
    field.innerZeros = precision - stored;
}

// A value in scientific notation: the digits without the point.
struct Digits {
    char text[kExactDigits + 16];
    int count;
    int exponent;
};

// Rounds to 1 + @p decimals digits.
void FindDigits(double value, int decimals, Digits& digits) {
    char* const text = digits.text;
    char* const end =
        std::to_chars(text, text + sizeof digits.text, value, std::chars_format::scientific, decimals).ptr;
    char* const mark = std::find(text, end, 'e');
    const char* const sign = mark + 1;
    std::from_chars(sign + (*sign == '+' ? 1 : 0), end, digits.exponent);
    digits.count = decimals + 1;
    if (decimals > 0)
        std::memmove(text + 1, text + 2, static_cast<std::size_t>(decimals));
    if (IsTieAboveEven(value, decimals - digits.exponent))
        ++text[decimals];
}

void WriteBody(NumberField& field, const char* text, int count) {
    std::memcpy(field.buffer + field.bodyLength, text, static_cast<std::size_t>(count));
    field.bodyLength += count;
}

void WriteZeros(NumberField& field, int count) {
    std::memset(field.buffer + field.bodyLength, '0', static_cast<std::size_t>(count));
    field.bodyLength += count;
}

void WritePoint(NumberField& field) {
    field.buffer[field.bodyLength++] = '.';
}

void WriteScientific(const Conversion& conversion, const Digits& digits, NumberField& field) {
    WriteBody(field, digits.text, 1);
    if (digits.count > 1 || conversion.alternate)
        WritePoint(field);
    WriteBody(field, digits.text + 1, digits.count - 1);
    AddExponent(conversion.type <= 'G' ? 'E' : 'e', digits.exponent, /*leastDigits*/ 3, field);
}

void RenderScientific(const Conversion& conversion, double value, NumberField& field) {
    const int precision = conversion.PrecisionOr(6);
    const int stored = std::min(precision, kExactDigits);
    Digits digits;
    FindDigits(value, stored, digits);
    WriteScientific(conversion, digits, field);
    field.innerZeros = precision - stored;
}

// Places the point among digits whose exponent is from -4 up to the count of digits asked for.
void WritePlaced(const Conversion& conversion, const Digits& digits, NumberField& field) {
    const int whole = digits.exponent + 1;
    if (whole <= 0) {
        WriteZeros(field, 1);
        WritePoint(field);
        WriteZeros(field, -whole);
        WriteBody(field, digits.text, digits.count);
        return;
    }
    const int given = std::min(whole, digits.count);
    WriteBody(field, digits.text, given);
    WriteZeros(field, whole - given);
    if (digits.count > given || conversion.alternate)
        WritePoint(field);
    WriteBody(field, digits.text + given, digits.count - given);
}

void RenderGeneral(const Conversion& conversion, double value, NumberField& field) {
    const int wanted = std::max(conversion.PrecisionOr(6), 1);
    const int stored = std::min(wanted, kExactDigits);
    Digits digits;
    FindDigits(value, stored - 1, digits);
    if (!conversion.alternate) {
        while (digits.count > 1 && digits.text[digits.count - 1] == '0')
            --digits.count;
    } else {
        field.innerZeros = wanted - stored;
    }
    if (digits.exponent < -4 || digits.exponent >= wanted)
        WriteScientific(conversion, digits, field);
    else
        WritePlaced(conversion, digits, field);
}

bool IsEither(char type, char lower) {
    return type == lower || type == lower - 'a' + 'A';
}

// The name that stands for the digits of a value that has none. Invalid operations give the NaN with the sign and the
// quiet bit alone.
const char* NameOf(double value) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    if ((bits & kMantissaMask) == 0)
        return "#INF";
    return bits == 0xFFF8000000000000u ? "#IND" : "#QNAN";
}

// Decimals that a value without digits is given.
int SpecialDecimals(const Conversion& conversion) {
    if (IsEither(conversion.type, 'a'))
        return conversion.PrecisionOr(13);
    const int precision = conversion.PrecisionOr(6);
    return IsEither(conversion.type, 'g') ? std::max(precision, 1) - 1 : precision;
}

// The name is cut like decimals: the last one left is raised when a character not below '5' follows it.
void RenderSpecial(const Conversion& conversion, double value, NumberField& field) {
    const char* const name = NameOf(value);
    const int length = static_cast<int>(std::strlen(name));
    const int decimals = SpecialDecimals(conversion);
    const int kept = std::min(decimals, length);
    WriteBody(field, "1", 1);
    if (kept > 0 || conversion.alternate)
        WritePoint(field);
    WriteBody(field, name, kept);
    if (kept > 0 && kept < length && name[kept] >= '5')
        ++field.buffer[field.bodyLength - 1];
    if (!IsEither(conversion.type, 'g') || conversion.alternate)
        field.innerZeros = decimals - kept;
    if (IsEither(conversion.type, 'e'))
        AddExponent(conversion.type, 0, /*leastDigits*/ 3, field);
    else if (IsEither(conversion.type, 'a'))
        AddExponent(conversion.type == 'a' ? 'p' : 'P', 0, /*leastDigits*/ 1, field);
}

} // namespace

void AddExponent(char letter, int exponent, int leastDigits, NumberField& field) {
    char* out = field.tail;
    *out++ = letter;
    *out++ = exponent < 0 ? '-' : '+';
    const int magnitude = exponent < 0 ? -exponent : exponent;
    for (int limit = 10, digits = 1; digits < leastDigits; ++digits, limit *= 10)
        if (magnitude < limit)
            *out++ = '0';
    out = std::to_chars(out, field.tail + sizeof field.tail, magnitude).ptr;
    field.tailLength = static_cast<int>(out - field.tail);
}

void RenderDouble(const Conversion& conversion, double value, NumberField& field) {
    const bool negative = (std::bit_cast<std::uint64_t>(value) >> 63) != 0;
    if (negative)
        field.AddPrefix('-');
    else if (conversion.plus || conversion.space)
        field.AddPrefix(conversion.plus ? '+' : ' ');
    field.zeroFill = conversion.zero;
    if (IsEither(conversion.type, 'a')) {
        field.AddPrefix('0');
        field.AddPrefix(conversion.type == 'a' ? 'x' : 'X');
    }
    const double magnitude = negative ? -value : value;
    if (DoubleParts(value).IsSpecial())
        RenderSpecial(conversion, value, field);
    else if (IsEither(conversion.type, 'f'))
        RenderFixed(conversion, magnitude, field);
    else if (IsEither(conversion.type, 'e'))
        RenderScientific(conversion, magnitude, field);
    else if (IsEither(conversion.type, 'g'))
        RenderGeneral(conversion, magnitude, field);
    else
        RenderHexDouble(conversion, magnitude, field);
}

} // namespace kel::platform
