// Object graphs from foreign bytes. A graph that reads is written again, read again and written once more: both times
// the same bytes come out.

#include "tests/stream/SampleObjects.h"

#include <cstdint>
#include <string>

namespace {

// Leaves nothing alive, whatever ends the reading.
struct Ender {
    ~Ender() { SampleObject::EndAll(); }
};

const ObjectFactory& Factory() {
    static SampleFactory& factory = *new SampleFactory;
    return factory;
}

std::string WrittenAgain(const std::string& stored) {
    MemoryInputStream memory(stored);
    MemoryOutputStream again;
    SerializingInputStream in(Factory(), memory);
    const ISerializable* const object = in.Create();
    SerializingOutputStream(Factory(), again).Write(*object);
    return again.GetContent();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Ender ender;
    try {
        const std::string first = WrittenAgain(std::string(reinterpret_cast<const char*>(data), size));
        if (WrittenAgain(first) != first)
            __builtin_trap();
    } catch (const StreamBase::Exception& failure) {
        if (failure.code < 2 || failure.code > 5)
            throw;
    }
    return 0;
}
