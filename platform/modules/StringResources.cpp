#include "platform/modules/StringResources.h"

#include "platform/modules/Module.h"

#include <kelcore/platform/codepages.h>

#include <cstring>
#include <vector>

namespace kel::platform {
namespace {

constexpr WORD kBlock = 16; // strings in a block

std::string AnsiText(const Bytes& units) {
    std::vector<WCHAR> wide(units.Size() / 2); // a copy, as the bytes may lie at an odd address
    std::memcpy(wide.data(), units.Data(), units.Size());
    std::string text(wide.size() * 4, '\0');
    const int size = WideCharToMultiByte(CP_ACP, 0, wide.data(), static_cast<int>(wide.size()), text.data(),
                                         static_cast<int>(text.size()), nullptr, nullptr);
    text.resize(static_cast<std::size_t>(size));
    return text;
}

} // namespace

// Each string of a block is a count of units and the units.
std::string StringResource(HMODULE module, WORD id) {
    Bytes block;
    FindResourceBytes(module, RT_STRING, MAKEINTRESOURCEA(id / kBlock + 1), block);
    std::size_t at = 0;
    for (WORD skip = id % kBlock; skip != 0 && block.Has(at, 2); --skip)
        at += 2 + block.Word(at) * 2u;
    if (!block.Has(at, 2) || block.Word(at) == 0 || !block.Has(at + 2, block.Word(at) * 2u))
        return {};
    return AnsiText(Bytes(block.Data() + at + 2, block.Word(at) * 2u));
}

} // namespace kel::platform
