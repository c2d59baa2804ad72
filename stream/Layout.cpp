// The fields of exported classes are part of the interface of the 32-bit library: clients hold the objects by value.

#include <kelcore/stream.h>

// Where fields lie in classes with virtual operations is the compiler's business, and this is about that compiler.
#pragma GCC diagnostic ignored "-Winvalid-offsetof"

namespace kel {

constexpr bool k32Bits = sizeof(void*) == 4;

template <class Class>
constexpr bool Measures(std::size_t size) {
    return !k32Bits || sizeof(Class) == size;
}

constexpr bool Lies(std::size_t offset, std::size_t expected) {
    return !k32Bits || offset == expected;
}

struct StreamLayout {
    static_assert(sizeof(StreamBase) == 1);
    static_assert(sizeof(OutputStream) == sizeof(void*) && sizeof(InputStream) == sizeof(void*));

    static_assert(Measures<StreamBase::Exception>(28));
    static_assert(offsetof(StreamBase::Exception, code) == 0);
    static_assert(Lies(offsetof(StreamBase::Exception, message), 4));

    static_assert(Measures<MemoryOutputStream>(28) && Lies(offsetof(MemoryOutputStream, m_content), 4));
    static_assert(Measures<MemoryInputStream>(12) && Lies(offsetof(MemoryInputStream, m_cursor), 4) &&
                  Lies(offsetof(MemoryInputStream, m_remaining), 8));
    static_assert(Measures<FileOutputStream>(8) && Lies(offsetof(FileOutputStream, m_handle), 4));
    static_assert(Measures<FileInputStream>(8) && Lies(offsetof(FileInputStream, m_handle), 4));

    static_assert(Measures<CRCOutputStream>(4100) && Lies(offsetof(CRCOutputStream, m_buffer), 8) &&
                  Lies(offsetof(CRCOutputStream, m_count), 4096));
    static_assert(Measures<CRCInputStream>(4100) && Lies(offsetof(CRCInputStream, m_buffer), 8) &&
                  Lies(offsetof(CRCInputStream, m_position), 4096));
    static_assert(Measures<CryptingOutputStream>(8) && Lies(offsetof(CryptingOutputStream, m_inner), 4));
    static_assert(Measures<CryptingInputStream>(8) && Lies(offsetof(CryptingInputStream, m_inner), 4));

    // References before it: factory, inner stream.
    static_assert(Measures<SerializingOutputStream>(24) && Lies(offsetof(SerializingOutputStream, m_counter), 12) &&
                  Lies(offsetof(SerializingOutputStream, m_values), 16) &&
                  Lies(offsetof(SerializingOutputStream, m_identities), 20));
    static_assert(Measures<SerializingInputStream>(24) && Lies(offsetof(SerializingInputStream, m_counter), 12) &&
                  Lies(offsetof(SerializingInputStream, m_values), 16) &&
                  Lies(offsetof(SerializingInputStream, m_references), 20));

    // Own table, registry, the counted base with its table and count.
    static_assert(Measures<ObjectFactory>(4 + 24 + 8));
};

} // namespace kel
