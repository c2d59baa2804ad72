// The fields of exported classes are part of the interface of the 32-bit library: clients hold the objects by value.

#include <kelcore/runtime.h>

#include <cstddef>

// Where fields lie in classes with virtual operations is the compiler's business, and this is about that compiler.
#pragma GCC diagnostic ignored "-Winvalid-offsetof"

namespace {

constexpr bool k32Bits = sizeof(void*) == 4;

constexpr bool IsOn32Bits(std::size_t value, std::size_t expected) {
    return !k32Bits || value == expected;
}

// Looks at the protected fields; a derived class adds none.
struct Module : ModuleBase {
    static void Check() {
        static_assert(IsOn32Bits(sizeof(Module), 36));
        static_assert(offsetof(Module, m_hInstance) == sizeof(void*));
        static_assert(offsetof(Module, m_hResource) == 2 * sizeof(void*));
        static_assert(offsetof(Module, m_strReserved) == 3 * sizeof(void*));
    }
};

static_assert(sizeof(ResourceTarget) == sizeof(void*));
static_assert(IsOn32Bits(sizeof(MSGBOXPARAMSA), 40));

} // namespace
