#pragma once

#include "platform/crt/Utf8.h"

/// The vector roads of UTF-8. A kernel moves a job forward by whole blocks, with the result of the plain road, and
/// stops at a character's front: where a malformed or rare character needs the plain road, or where less than a block
/// is left of the source or the room. It reads and writes nothing outside of them.
namespace kel::platform {

/// A kernel by its two directions; null where the plain road does it all.
struct Utf8Kernel {
    void (*encode)(EncodeJob&);
    void (*decode)(DecodeJob&);
};

/// The best kernel for this processor, null if there is none.
const Utf8Kernel* BestUtf8Kernel();

/// The conversions of Utf8.h with a given kernel, for those and for tests.
Stop EncodeUtf8With(const Utf8Kernel* kernel, EncodeJob& job);
Stop DecodeUtf8With(const Utf8Kernel* kernel, DecodeJob& job);

} // namespace kel::platform
