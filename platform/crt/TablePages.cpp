#include "platform/crt/TablePages.h"

#include "platform/crt/AsciiRuns.h"

#include <algorithm>

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

// Elements that go through the tables in a row before the vectors look for ASCII again.
constexpr std::size_t kStretch = 32;

/// Encodes up to a stretch of units, as long as each has a counterpart and there is room for the longest one.
void EncodeStretch(const TablePage& page, EncodeJob& job) {
    const std::size_t count = std::min({job.Left(), job.Room() / 2, kStretch});
    const WCHAR* const end = job.from + count;
    const WCHAR* from = job.from;
    char* to = job.to;
    for (; from != end; ++from) {
        const Code code = page.codes[*from];
        if (code == 0)
            break;
        to[0] = static_cast<char>(First(code));
        to[1] = static_cast<char>(Second(code));
        // One more where the second byte is not 0; the sign bit, as a comparison here becomes a branch that text
        // mispredicts.
        to += 1 + ((0xFFu - code) >> 31);
    }
    job.from = from;
    job.to = to;
}

/// Decodes up to a stretch of bytes that stand alone and have a meaning.
void DecodeSingles(const TablePage& page, DecodeJob& job) {
    const std::size_t count = std::min({job.Left(), job.Room(), kStretch});
    std::size_t done = 0;
    for (; done < count; ++done) {
        const WCHAR unit = page.single[static_cast<unsigned char>(job.from[done])];
        if (unit == TablePage::kNone)
            break;
        job.to[done] = unit;
    }
    job.from += done;
    job.to += done;
}

/// Decodes up to a stretch of double-byte characters that have a meaning.
void DecodeDoubles(const TablePage& page, DecodeJob& job) {
    std::size_t count = std::min({job.Left() / 2, job.Room(), kStretch});
    const char* from = job.from;
    WCHAR* to = job.to;
    for (; count > 0; --count, from += 2) {
        const WCHAR* row = page.rows[static_cast<unsigned char>(from[0])].get();
        if (row == nullptr)
            break;
        const WCHAR unit = row[static_cast<unsigned char>(from[1])];
        if (unit == TablePage::kNone)
            break;
        *to++ = unit;
    }
    job.from = from;
    job.to = to;
}

/// Encodes one unit. @return whether there is room for it.
bool EncodeUnit(const TablePage& page, EncodeJob& job, DefaultChar& missing) {
    Code code = page.codes[*job.from];
    if (code == 0 && *job.from != 0) {
        missing.used = true;
        code = missing.code;
    }
    const std::size_t length = Second(code) == 0 ? 1 : 2;
    if (job.Room() < length)
        return false;
    *job.to++ = static_cast<char>(First(code));
    if (length == 2)
        *job.to++ = static_cast<char>(Second(code));
    ++job.from;
    return true;
}

/// Decodes one character. @return whether it could; if not, why is in @p why.
bool DecodeCharacter(const TablePage& page, DecodeJob& job, Stop& why) {
    const Meaning next = NextOf(page, job.from, job.Left());
    if (job.strict && !HasMeaning(page, next.unit)) {
        why = Stop::Malformed;
        return false;
    }
    if (job.Room() == 0) {
        why = Stop::Full;
        return false;
    }
    job.from += next.length;
    *job.to++ = next.unit == TablePage::kNone ? page.defaultUnit : next.unit;
    return true;
}

} // namespace

Stop EncodeTable(const TablePage& page, EncodeJob& job, DefaultChar& missing) {
    while (job.from != job.fromEnd) {
        if (page.ascii)
            MoveAscii(job, NarrowAscii);
        EncodeStretch(page, job);
        if (job.from != job.fromEnd && !EncodeUnit(page, job, missing))
            return Stop::Full;
    }
    return Stop::End;
}

Stop DecodeTable(const TablePage& page, DecodeJob& job) {
    Stop why = Stop::End;
    const auto kernel = page.ascii && !page.doubleByte && !job.strict ? BestSinglesKernel() : nullptr;
    if (kernel != nullptr)
        kernel(page.highHalf, job);
    while (job.from != job.fromEnd) {
        if (page.ascii)
            MoveAscii(job, WidenAscii);
        // A strict conversion looks at every unit.
        if (!job.strict && page.doubleByte)
            DecodeDoubles(page, job);
        if (!job.strict)
            DecodeSingles(page, job);
        if (job.from != job.fromEnd && !DecodeCharacter(page, job, why))
            return why;
    }
    return why;
}

} // namespace kel::platform
