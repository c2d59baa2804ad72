#pragma once

#include <kelcore/stream/core.h>

/// The failures that the streams themselves find. Codes and texts are part of the interface.
namespace kel {

enum FailureCode : __int32 {
    kSystemFailure = 1,
    kMalformedObjects = 2,
    kDamagedBlock = 3,
    kEndOfData = 4,
    kVersionTooHigh = 5,
};

/// Throws the stream exception.
/// @param message ASCII.
[[noreturn]] void ThrowFailure(FailureCode code, const char* message);

} // namespace kel
