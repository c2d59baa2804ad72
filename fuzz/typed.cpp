// Typed values from foreign bytes: the first bytes choose the types, the rest is the stream.

#include <kelcore/stream.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string>

namespace {

template <class Value>
std::string Written(const Value& value) {
    MemoryOutputStream memory;
    memory << value;
    return memory.GetContent();
}

template <class Value>
void Extract(InputStream& source) {
    Value value{};
    source >> value;
    // What was read can be written, and those bytes read back give the same bytes.
    const std::string written = Written(value);
    MemoryInputStream memory(written);
    Value back{};
    memory >> back;
    if (Written(back) != written)
        __builtin_trap();
}

void ExtractOne(InputStream& source, unsigned type) {
    using Extraction = void (*)(InputStream&);
    static const Extraction extractions[] = {Extract<bool>,           Extract<char>,         Extract<short>,
                                             Extract<unsigned short>, Extract<int>,          Extract<long>,
                                             Extract<unsigned long>,  Extract<float>,        Extract<double>,
                                             Extract<__int64>,        Extract<NarrowString>, Extract<WideString>};
    extractions[type % std::size(extractions)](source);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::size_t types = std::min<std::size_t>(size, 8);
    MemoryInputStream source(reinterpret_cast<const char*>(data + types), static_cast<int>(size - types));
    try {
        for (std::size_t i = 0; i < types; ++i)
            ExtractOne(source, data[i]);
    } catch (const StreamBase::Exception& failure) {
        if (failure.code != 4)
            throw;
    }
    return 0;
}
