#include "platform/crt/FormatNumber.h"

#include <charconv>

namespace kel::platform {
namespace {

void WriteDigits(NumberField& field, std::uint64_t value, int base) {
    const auto end = std::to_chars(field.buffer, field.buffer + sizeof field.buffer, value, base).ptr;
    field.bodyLength = static_cast<int>(end - field.buffer);
}

void MakeUpper(NumberField& field) {
    for (int i = 0; i < field.bodyLength; ++i)
        if (field.buffer[i] >= 'a')
            field.buffer[i] = static_cast<char>(field.buffer[i] - 'a' + 'A');
}

void RenderDecimal(const Conversion& conversion, std::int64_t value, NumberField& field) {
    auto magnitude = static_cast<std::uint64_t>(value);
    if (conversion.type != 'u') {
        if (value < 0) {
            field.AddPrefix('-');
            magnitude = 0 - magnitude;
        } else if (conversion.plus || conversion.space) {
            field.AddPrefix(conversion.plus ? '+' : ' ');
        }
    }
    WriteDigits(field, magnitude, 10);
}

void RenderHex(const Conversion& conversion, std::uint64_t value, NumberField& field) {
    if (conversion.alternate && value != 0) {
        field.AddPrefix('0');
        field.AddPrefix(conversion.type);
    }
    WriteDigits(field, value, 16);
    if (conversion.type == 'X')
        MakeUpper(field);
}

void RenderOctal(const Conversion& conversion, std::uint64_t value, NumberField& field) {
    WriteDigits(field, value, 8);
    // The other form asks for a zero in front, which a precision may have brought already.
    if (conversion.alternate && value != 0 && conversion.precision <= field.bodyLength)
        field.leadingZeros = 1;
}

} // namespace

void RenderInteger(const Conversion& conversion, std::int64_t value, NumberField& field) {
    const auto bits = static_cast<std::uint64_t>(value);
    if (conversion.type == 'o')
        RenderOctal(conversion, bits, field);
    else if (conversion.type == 'x' || conversion.type == 'X')
        RenderHex(conversion, bits, field);
    else
        RenderDecimal(conversion, value, field);
    if (conversion.precision > field.bodyLength)
        field.leadingZeros = conversion.precision - field.bodyLength;
    else if (conversion.precision == 0 && value == 0)
        field.bodyLength = conversion.type == 'o' && conversion.alternate ? 1 : 0;
    field.zeroFill = conversion.zero && conversion.precision < 0;
}

void RenderPointer(const Conversion& conversion, std::uintptr_t value, NumberField& field) {
    if (conversion.alternate) {
        field.AddPrefix('0');
        field.AddPrefix('X');
    }
    WriteDigits(field, value, 16);
    MakeUpper(field);
    field.leadingZeros = static_cast<int>(2 * sizeof value) - field.bodyLength;
}

} // namespace kel::platform
