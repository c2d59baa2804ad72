// Version records from foreign bytes: the first byte says which part of the room that is wanted the block has, the rest
// is the record. Whatever is answered lies in the block.

#include "platform/modules/VersionRecord.h"

#include <cstdint>
#include <vector>

using namespace kel::platform;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1)
        return 0;
    const Bytes record(reinterpret_cast<const char*>(data + 1), size - 1);
    const std::size_t wanted = VersionBlockSize(record);
    const std::size_t room = wanted * data[0] / 255;
    if (room < 2)
        return 0;
    std::vector<char> block(room);
    FillVersionBlock(record, block.data(), block.size());
    for (const char* path : {"\\", "\\VarFileInfo\\Translation", "\\StringFileInfo", "\\StringFileInfo\\040904b0",
                             "\\StringFileInfo\\040904b0\\ProductName", "\\StringFileInfo\\040904b0\\Empty"}) {
        void* value = nullptr;
        UINT length = 0;
        if (!QueryVersionBlock(block.data(), path, &value, &length))
            continue;
        const char* at = static_cast<const char*>(value);
        if (at < block.data() || at + length > block.data() + block.size())
            __builtin_trap();
    }
    return 0;
}
