#pragma once

#include "platform/crt/FormatNumber.h"
#include "platform/crt/FormatText.h"

#include <kelcore/platform/base.h>

#include <cstring>

/// Arguments put out by their conversions. The functions are templates over
/// - @c Output, where results go: Fill(character, count), PutAscii(text, length), Put(text, length) over its own units,
///   and the type Unit;
/// - @c Arguments, where values come from: Int, Quad, Pointer.
namespace kel::platform {

/// Puts out a text between the spaces that its width asks for. @param put puts out the text, of @p length units.
template <class Output, class Put>
inline void PutPadded(Output& out, const Conversion& conversion, std::int64_t length, Put put) {
    const std::int64_t spaces = conversion.width - length;
    if (spaces > 0 && !conversion.left)
        out.Fill(conversion.TextPadding(), spaces);
    put();
    if (spaces > 0 && conversion.left)
        out.Fill(' ', spaces);
}

template <class Output>
inline void PutNumber(Output& out, const Conversion& conversion, const NumberField& field) {
    std::int64_t spaces = conversion.width - field.Length();
    std::int64_t zeros = field.leadingZeros;
    if (field.zeroFill && !conversion.left && spaces > 0) {
        zeros += spaces;
        spaces = 0;
    }
    if (spaces > 0 && !conversion.left)
        out.Fill(' ', spaces);
    out.PutAscii(field.prefix, field.prefixLength);
    out.Fill('0', zeros);
    out.PutAscii(field.body, field.bodyLength);
    out.Fill('0', field.innerZeros);
    out.PutAscii(field.tail, field.tailLength);
    if (spaces > 0 && conversion.left)
        out.Fill(' ', spaces);
}

/// Puts out text in the output's own units.
template <class Output, class Unit = typename Output::Unit>
inline void PutOwnText(Output& out, const Conversion& conversion, const Unit* text, std::size_t length) {
    PutPadded(out, conversion, static_cast<std::int64_t>(length), [&] { out.Put(text, length); });
}

template <class Output>
inline void PutUnits(Output& out, const Conversion& conversion, const WCHAR* text, std::size_t length) {
    if constexpr (sizeof(typename Output::Unit) == sizeof(WCHAR)) {
        PutOwnText(out, conversion, text, length);
    } else {
        const std::string bytes = Narrowed(text, length);
        PutOwnText(out, conversion, bytes.data(), bytes.size());
    }
}

template <class Output>
inline void PutBytes(Output& out, const Conversion& conversion, const char* text, std::size_t length) {
    if constexpr (sizeof(typename Output::Unit) == sizeof(char)) {
        PutOwnText(out, conversion, text, length);
    } else {
        const std::basic_string<WCHAR> units = Widened(text, length);
        PutOwnText(out, conversion, units.data(), units.size());
    }
}

/// Whether a text or character argument is wide: capital types mean the width that is not the output's own, and a size
/// prefix decides against both.
template <class Output>
inline bool IsWide(const Conversion& conversion) {
    if (conversion.size == ArgumentSize::Short || conversion.size == ArgumentSize::Long)
        return conversion.size == ArgumentSize::Long;
    const bool wideOutput = sizeof(typename Output::Unit) == sizeof(WCHAR);
    return wideOutput == (conversion.type >= 'a');
}

template <class Output, class Arguments>
inline void PutCharacter(Output& out, const Conversion& conversion, Arguments& arguments) {
    const int value = arguments.Int();
    const auto unit = static_cast<WCHAR>(value);
    const auto byte = static_cast<char>(value);
    if (IsWide<Output>(conversion))
        PutUnits(out, conversion, &unit, 1);
    else
        PutBytes(out, conversion, &byte, 1);
}

template <class Output>
inline void PutNull(Output& out, const Conversion& conversion) {
    const std::size_t length = BoundedLength("(null)", static_cast<std::size_t>(conversion.precision));
    PutPadded(out, conversion, static_cast<std::int64_t>(length), [&] { out.PutAscii("(null)", length); });
}

template <class Output, class Arguments>
inline void PutText(Output& out, const Conversion& conversion, Arguments& arguments) {
    const void* const argument = arguments.Pointer();
    // No precision, -1, is the largest bound.
    const auto most = static_cast<std::size_t>(conversion.precision);
    if (argument == nullptr) {
        PutNull(out, conversion);
    } else if (IsWide<Output>(conversion)) {
        const auto* const text = static_cast<const WCHAR*>(argument);
        PutUnits(out, conversion, text, BoundedLength(text, most));
    } else {
        const auto* const text = static_cast<const char*>(argument);
        const std::size_t length = BoundedLength(text, most);
        PutBytes(out, conversion, text, length == most ? WholeCharacters(text, length) : length);
    }
}

/// The next integer argument, extended from the size and signedness that its conversion says.
template <class Arguments>
inline std::int64_t IntegerArgument(const Conversion& conversion, Arguments& arguments) {
    const bool isSigned = conversion.type == 'd' || conversion.type == 'i';
    if (conversion.size == ArgumentSize::Quad || conversion.size == ArgumentSize::Pointer)
        return arguments.Quad(conversion.size, isSigned);
    const int value = arguments.Int();
    if (conversion.size == ArgumentSize::Short)
        return isSigned ? static_cast<std::int16_t>(value) : static_cast<std::uint16_t>(value);
    return isSigned ? value : static_cast<std::int64_t>(static_cast<std::uint32_t>(value));
}

template <class Output, class Arguments>
inline void PutInteger(Output& out, const Conversion& conversion, Arguments& arguments) {
    NumberField field;
    if (conversion.type == 'p')
        RenderPointer(conversion, reinterpret_cast<std::uintptr_t>(arguments.Pointer()), field);
    else
        RenderInteger(conversion, IntegerArgument(conversion, arguments), field);
    PutNumber(out, conversion, field);
}

} // namespace kel::platform
