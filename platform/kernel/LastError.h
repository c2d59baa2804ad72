#pragma once

#include <kelcore/platform/errors.h>

#include <cerrno>

namespace kel::platform {

/// The Win32 code that stands for a host error number on a file or folder.
DWORD ErrorFromHost(int hostError);

/// Sets the last error. @return false, so that a failing call is one statement.
inline bool Fail(DWORD code) {
    SetLastError(code);
    return false;
}

/// Sets the last error from errno. @return false.
inline bool FailFromHost() {
    return Fail(ErrorFromHost(errno));
}

/// Repeats a host call that returns -1 for as long as a signal interrupts it.
template <class Call>
auto Uninterrupted(Call call) {
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

} // namespace kel::platform
