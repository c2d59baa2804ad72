#include <kelcore/platform/messages.h>

#include "platform/kernel/LastError.h"

#include <cstdlib>

HLOCAL LocalAlloc(UINT flags, SIZE_T bytes) {
    if ((flags & ~static_cast<UINT>(LPTR)) != 0) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    // A block of no bytes is still a block.
    const SIZE_T size = bytes == 0 ? 1 : bytes;
    void* const memory = (flags & LMEM_ZEROINIT) != 0 ? std::calloc(size, 1) : std::malloc(size);
    if (memory == nullptr)
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return memory;
}

HLOCAL LocalFree(HLOCAL memory) {
    std::free(memory);
    return nullptr;
}
