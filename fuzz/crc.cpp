// Checksummed blocks from foreign bytes, read in pieces of many sizes; and the foreign bytes as payload, which must
// come back as they were.

#include <kelcore/stream.h>

#include <cstdint>
#include <string>

namespace {

// Reads up to the first damage.
void ReadAll(const std::uint8_t* data, std::size_t size) {
    MemoryInputStream memory(reinterpret_cast<const char*>(data), static_cast<int>(size));
    CRCInputStream blocks(memory);
    char piece[97];
    try {
        for (int count = 1;; count = count % 97 + 1)
            blocks.Read(piece, count);
    } catch (const StreamBase::Exception& failure) {
        if (failure.code != 3 && failure.code != 4)
            throw;
    }
}

std::string WriteAll(const std::string& bytes) {
    MemoryOutputStream memory;
    CRCOutputStream blocks(memory);
    blocks.Write(bytes.data(), static_cast<int>(bytes.size()));
    blocks.Flush();
    return memory.GetContent();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ReadAll(data, size);
    const std::string plain(reinterpret_cast<const char*>(data), size);
    const std::string stored = WriteAll(plain);
    MemoryInputStream memory(stored);
    CRCInputStream blocks(memory);
    std::string back(size, '\0');
    blocks.Read(back.data(), static_cast<int>(size));
    if (back != plain)
        __builtin_trap();
    return 0;
}
