#pragma once

#include <kelcore/platform/base.h>

#include <cstddef>

/// UTF-8 and UTF-16, in both directions, over buffers of any length.
namespace kel::platform {

/// What ended a conversion.
enum class Stop {
    End,       ///< the whole source is converted
    Full,      ///< the next character does not fit
    Malformed, ///< the next character has no exact counterpart, and the job is strict
};

/// A conversion under way: what is left of the source and of the room. A conversion moves both fronts as far as it
/// came.
template <class From, class To>
struct Job {
    const From* from;
    const From* fromEnd;
    To* to;
    To* toEnd;
    bool strict; ///< stop at malformed input instead of replacing it

    [[nodiscard]] std::size_t Left() const { return static_cast<std::size_t>(fromEnd - from); }
    [[nodiscard]] std::size_t Room() const { return static_cast<std::size_t>(toEnd - to); }
};

using EncodeJob = Job<WCHAR, char>;
using DecodeJob = Job<char, WCHAR>;

/// UTF-16 to UTF-8. Lone surrogates become EF BF BD.
Stop EncodeUtf8(EncodeJob& job);

/// UTF-8 to UTF-16. Each maximal part of a well-formed sequence, and each other byte, becomes one U+FFFD.
Stop DecodeUtf8(DecodeJob& job);

} // namespace kel::platform
