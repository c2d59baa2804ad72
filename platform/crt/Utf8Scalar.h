#pragma once

#include "platform/crt/Utf8.h"

/// The plain road of UTF-8: one character a step. It is the oracle of the kernels, and their helper for what is rare.
namespace kel::platform {

constexpr WCHAR kReplacement = 0xFFFD;

constexpr bool IsHighSurrogate(unsigned unit) {
    return (unit & 0xFC00) == 0xD800;
}
constexpr bool IsLowSurrogate(unsigned unit) {
    return (unit & 0xFC00) == 0xDC00;
}
constexpr bool IsContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// One character of text.
struct Character {
    char32_t code;        ///< U+FFFD if malformed
    unsigned char length; ///< elements of the source that it takes
    bool malformed;
};

/// The character at the front of a source that is not empty.
Character NextUtf16(const WCHAR* from, std::size_t left);
Character NextUtf8(const char* from, std::size_t left);

/// Converts one character, the source not being empty. @return whether it could; if not, why is in @p why.
bool EncodeOne(EncodeJob& job, Stop& why);
bool DecodeOne(DecodeJob& job, Stop& why);

/// Whole conversions by the plain road alone.
Stop EncodeUtf8Scalar(EncodeJob& job);
Stop DecodeUtf8Scalar(DecodeJob& job);

} // namespace kel::platform
