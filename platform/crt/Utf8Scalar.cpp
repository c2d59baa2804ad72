#include "platform/crt/Utf8Scalar.h"

namespace kel::platform {
namespace {

constexpr Character kBadUnit = {kReplacement, 1, true};

/// What a lead byte announces: the length of its sequence and the range of its second byte, which alone tells overlong
/// forms, surrogates and code points past U+10FFFF.
struct Lead {
    unsigned char length; // 0: no lead byte
    unsigned char secondFrom;
    unsigned char secondTo;
};

Lead LeadOf(unsigned char byte) {
    if (byte < 0xC2 || byte > 0xF4)
        return {0, 0, 0};
    if (byte < 0xE0)
        return {2, 0x80, 0xBF};
    if (byte < 0xF0)
        return {3, static_cast<unsigned char>(byte == 0xE0 ? 0xA0 : 0x80),
                static_cast<unsigned char>(byte == 0xED ? 0x9F : 0xBF)};
    return {4, static_cast<unsigned char>(byte == 0xF0 ? 0x90 : 0x80),
            static_cast<unsigned char>(byte == 0xF4 ? 0x8F : 0xBF)};
}

std::size_t Utf8Length(char32_t code) {
    return code < 0x80 ? 1 : code < 0x800 ? 2 : code < 0x10000 ? 3 : 4;
}

void PutUtf8(char* to, char32_t code, std::size_t length) {
    constexpr unsigned char kMark[] = {0, 0, 0xC0, 0xE0, 0xF0};
    for (std::size_t i = length - 1; i > 0; --i, code >>= 6)
        to[i] = static_cast<char>(0x80 | (code & 0x3F));
    to[0] = static_cast<char>(kMark[length] | code);
}

template <class OneJob, bool (*One)(OneJob&, Stop&)>
Stop Whole(OneJob& job) {
    Stop why = Stop::End;
    while (job.from != job.fromEnd && One(job, why)) {
    }
    return why;
}

} // namespace

Character NextUtf16(const WCHAR* from, std::size_t left) {
    const unsigned unit = from[0];
    if (unit < 0xD800 || unit > 0xDFFF)
        return {unit, 1, false};
    if (!IsHighSurrogate(unit) || left < 2 || !IsLowSurrogate(from[1]))
        return kBadUnit;
    return {0x10000 + ((unit - 0xD800) << 10) + (from[1] - 0xDC00u), 2, false};
}

Character NextUtf8(const char* from, std::size_t left) {
    const auto first = static_cast<unsigned char>(from[0]);
    if (first < 0x80)
        return {first, 1, false};
    const Lead lead = LeadOf(first);
    if (lead.length == 0)
        return kBadUnit;
    char32_t code = first & (0x7F >> lead.length);
    for (unsigned char i = 1; i < lead.length; ++i) {
        const auto byte = i < left ? static_cast<unsigned char>(from[i]) : 0u;
        const bool fits = i == 1 ? byte >= lead.secondFrom && byte <= lead.secondTo : (byte & 0xC0) == 0x80;
        if (!fits)
            return {kReplacement, i, true};
        code = code << 6 | (byte & 0x3F);
    }
    return {code, lead.length, false};
}

bool EncodeOne(EncodeJob& job, Stop& why) {
    const Character next = NextUtf16(job.from, job.Left());
    const std::size_t length = Utf8Length(next.code);
    if (next.malformed && job.strict) {
        why = Stop::Malformed;
        return false;
    }
    if (job.Room() < length) {
        why = Stop::Full;
        return false;
    }
    PutUtf8(job.to, next.code, length);
    job.from += next.length;
    job.to += length;
    return true;
}

bool DecodeOne(DecodeJob& job, Stop& why) {
    const Character next = NextUtf8(job.from, job.Left());
    const std::size_t length = next.code < 0x10000 ? 1 : 2;
    if (next.malformed && job.strict) {
        why = Stop::Malformed;
        return false;
    }
    if (job.Room() < length) {
        why = Stop::Full;
        return false;
    }
    if (length == 1) {
        job.to[0] = static_cast<WCHAR>(next.code);
    } else {
        job.to[0] = static_cast<WCHAR>(0xD7C0 + (next.code >> 10));
        job.to[1] = static_cast<WCHAR>(0xDC00 | (next.code & 0x3FF));
    }
    job.from += next.length;
    job.to += length;
    return true;
}

Stop EncodeUtf8Scalar(EncodeJob& job) {
    return Whole<EncodeJob, EncodeOne>(job);
}

Stop DecodeUtf8Scalar(DecodeJob& job) {
    return Whole<DecodeJob, DecodeOne>(job);
}

} // namespace kel::platform
