#pragma once

#include <doctest/doctest.h>
#include <kelcore/text.h>

/// Shows wide texts in failed checks: printable ASCII as it is, every other unit as its number in braces.
template <>
struct doctest::StringMaker<WideString> {
    static doctest::String convert(const WideString& text) {
        std::string shown = "'";
        for (const unsigned short unit : text) {
            const bool printable = unit >= 0x20 && unit < 0x7F;
            shown += printable ? std::string(1, static_cast<char>(unit)) : "{" + std::to_string(unit) + "}";
        }
        return (shown + "'").c_str();
    }
};

template <>
struct doctest::StringMaker<String> : doctest::StringMaker<WideString> {};
