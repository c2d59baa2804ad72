#include "platform/crt/Utf8.h"

#include "platform/crt/AsciiRuns.h"
#include "platform/crt/Utf8Kernels.h"
#include "platform/crt/Utf8Scalar.h"

namespace kel::platform {
namespace {

// Characters that the plain road takes before the vectors try again.
constexpr int kPlainSteps = 16;
// Sources shorter than this are mostly ASCII from end to end, which takes less than entering a kernel.
constexpr std::size_t kShort = 128;

/// Alternates between the kernel, ASCII runs and the plain road.
template <class AnyJob, class Ascii, class One>
Stop Convert(AnyJob& job, void (*kernel)(AnyJob&), Ascii ascii, One one) {
    Stop why = Stop::End;
    while (job.from != job.fromEnd) {
        if (kernel != nullptr)
            kernel(job);
        MoveAscii(job, ascii);
        for (int step = 0; step < kPlainSteps && job.from != job.fromEnd; ++step) {
            if (!one(job, why))
                return why;
        }
    }
    return why;
}

/// Whether a short text was ASCII and is done.
template <class AnyJob, class Ascii>
bool ShortAscii(AnyJob& job, Ascii ascii) {
    if (job.Left() >= kShort)
        return false;
    MoveAscii(job, ascii);
    return job.from == job.fromEnd;
}

} // namespace

Stop EncodeUtf8With(const Utf8Kernel* kernel, EncodeJob& job) {
    return Convert(job, kernel != nullptr ? kernel->encode : nullptr, NarrowAscii, EncodeOne);
}

Stop DecodeUtf8With(const Utf8Kernel* kernel, DecodeJob& job) {
    return Convert(job, kernel != nullptr ? kernel->decode : nullptr, WidenAscii, DecodeOne);
}

Stop EncodeUtf8(EncodeJob& job) {
    return ShortAscii(job, NarrowAscii) ? Stop::End : EncodeUtf8With(BestUtf8Kernel(), job);
}

Stop DecodeUtf8(DecodeJob& job) {
    return ShortAscii(job, WidenAscii) ? Stop::End : DecodeUtf8With(BestUtf8Kernel(), job);
}

} // namespace kel::platform
