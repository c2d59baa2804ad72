#include "platform/crt/TablePages.h"

namespace kel::platform {
namespace {

unsigned char First(Code code) {
    return static_cast<unsigned char>(code);
}

unsigned char Second(Code code) {
    return static_cast<unsigned char>(code >> 8);
}

/// The unit that the bytes at the front mean, kNone for none, and how many of them belong together. A lead byte before
/// a NUL or at the end stands alone, so that a terminator is never swallowed.
struct Meaning {
    WCHAR unit;
    unsigned char length;
};

Meaning NextOf(const TablePage& page, const char* from, std::size_t left) {
    const auto first = static_cast<unsigned char>(from[0]);
    const WCHAR* row = page.rows[first].get();
    if (row == nullptr)
        return {page.single[first], 1};
    if (left < 2 || from[1] == '\0')
        return {TablePage::kNone, 1};
    return {row[static_cast<unsigned char>(from[1])], 2};
}

bool HasMeaning(const TablePage& page, WCHAR unit) {
    return unit != TablePage::kNone && (unit < page.firstGap || unit >= page.endOfGaps);
}

} // namespace

Stop EncodeTable(const TablePage& page, EncodeJob& job, DefaultChar& missing) {
    for (; job.from != job.fromEnd; ++job.from) {
        Code code = page.codes[*job.from];
        if (code == 0 && *job.from != 0) {
            missing.used = true;
            code = missing.code;
        }
        const std::size_t length = Second(code) == 0 ? 1 : 2;
        if (job.Room() < length)
            return Stop::Full;
        *job.to++ = static_cast<char>(First(code));
        if (length == 2)
            *job.to++ = static_cast<char>(Second(code));
    }
    return Stop::End;
}

Stop DecodeTable(const TablePage& page, DecodeJob& job) {
    while (job.from != job.fromEnd) {
        Meaning next = NextOf(page, job.from, job.Left());
        if (job.strict && !HasMeaning(page, next.unit))
            return Stop::Malformed;
        if (next.unit == TablePage::kNone)
            next.unit = page.defaultUnit;
        if (job.Room() == 0)
            return Stop::Full;
        job.from += next.length;
        *job.to++ = next.unit;
    }
    return Stop::End;
}

} // namespace kel::platform
