#pragma once

#include "platform/kernel/LastError.h"

#include <new>

namespace kel::platform {

/// The result of @p call; a null result with the last error ERROR_NOT_ENOUGH_MEMORY when memory runs out in it.
template <class Call>
auto Guarded(Call call) -> decltype(call()) {
    try {
        return call();
    } catch (const std::bad_alloc&) {
        Fail(ERROR_NOT_ENOUGH_MEMORY);
        return {};
    }
}

} // namespace kel::platform
