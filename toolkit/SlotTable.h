#pragma once

#include <kelcore/imaging/toolkit.h>

#include <cstddef>
#include <typeinfo>

namespace kel::toolkit {

/// A control's virtual table as compilers of both targets lay it out: what stands before the slots is looked at by
/// sanitizers and casts only.
struct SlotTable {
    std::ptrdiff_t offsetToTop = 0;
    const std::type_info* type = &typeid(IControl);
    const void* slots[kSlots] = {};

    /// The function's type is that of the operation: what stands in the contract is what is called.
    template <class... Arguments>
    void Put(Operation<Arguments...> operation, typename Operation<Arguments...>::Function function) {
        slots[operation.position] = reinterpret_cast<const void*>(function);
    }
};
static_assert(offsetof(SlotTable, slots) == 2 * sizeof(void*));

} // namespace kel::toolkit
