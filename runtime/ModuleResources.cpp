#include <kelcore/runtime/modules.h>

#include <cstdint>
#include <cstring>

HACCEL ModuleBase::m_hAccel = nullptr;

namespace {

constexpr unsigned kStringsInBlock = 16;
constexpr std::uintptr_t kLargestNumber = 0xFFFF;
constexpr std::uintptr_t kBitmap = 2;

// A numeric resource name: the number in place of a pointer.
const char* Number(unsigned id) {
    return reinterpret_cast<const char*>(static_cast<std::uintptr_t>(id & kLargestNumber));
}

std::uintptr_t NumberOf(const char* type) {
    return reinterpret_cast<std::uintptr_t>(type);
}

bool IsInEveryLanguageTheSame(const char* type) {
    return NumberOf(type) <= kLargestNumber ? NumberOf(type) == kBitmap : std::strcmp(type, "PICTURE") == 0;
}

// A resource in memory. Its bytes lie at any address, so units are copied out of them.
struct Block {
    const unsigned char* bytes = nullptr;
    std::size_t size = 0;

    bool Skip(std::size_t count) {
        if (count > size)
            return false;
        bytes += count;
        size -= count;
        return true;
    }

    // Takes the 16-bit number at the start.
    bool TakeCount(std::size_t& count) {
        unsigned short unit;
        if (size < sizeof unit)
            return false;
        std::memcpy(&unit, bytes, sizeof unit);
        count = unit;
        return Skip(sizeof unit);
    }
};

Block FindStrings(HINSTANCE instance, unsigned block) {
    const HRSRC found = FindResourceA(instance, Number(block), RT_STRING);
    if (found == nullptr)
        return {};
    const HGLOBAL loaded = ::LoadResource(instance, found);
    const void* const bytes = loaded == nullptr ? nullptr : LockResource(loaded);
    if (bytes == nullptr)
        return {};
    return {static_cast<const unsigned char*>(bytes), SizeofResource(instance, found)};
}

// Narrows @p block down to the units of one of its strings; false when it ends before.
bool SelectString(Block& block, unsigned index) {
    std::size_t count = 0;
    if (!block.TakeCount(count))
        return false;
    for (; index != 0; --index)
        if (!block.Skip(count * sizeof(unsigned short)) || !block.TakeCount(count))
            return false;
    const bool isWhole = count * sizeof(unsigned short) <= block.size;
    block.size = count * sizeof(unsigned short);
    return isWhole;
}

} // namespace

bool ModuleBase::LoadStringA(unsigned int id, String& text, int first, int last) const {
    return LoadStringA(m_hResource, id, text, first, last);
}

bool ModuleBase::LoadStringA(HINSTANCE instance, unsigned int id, String& text, int first, int last) {
    text.clear();
    Block block = FindStrings(instance, id / kStringsInBlock + 1);
    if (!SelectString(block, id % kStringsInBlock))
        return false;
    text.resize(block.size / sizeof(unsigned short));
    std::memcpy(text.data(), block.bytes, block.size);
    const bool isAllWanted = first <= 0 && last < 0;
    if (!isAllWanted)
        text = text.GetLines(first, last);
    return true;
}

void* ModuleBase::LoadResource(unsigned int id, const char* type, unsigned long* size) const {
    const HINSTANCE module = IsInEveryLanguageTheSame(type) ? m_hInstance : m_hResource;
    const HRSRC found = FindResourceA(module, Number(id), type);
    if (found == nullptr)
        return nullptr;
    if (size != nullptr)
        *size = SizeofResource(module, found);
    return ::LoadResource(module, found);
}

String ModuleBase::CreateResourceURL(unsigned int id, const char* type) {
    const String path = GetPath();
    String address;
    address.Format(u"res://%s/%i/%i"_w, static_cast<const unsigned short*>(path), static_cast<int>(NumberOf(type)),
                   static_cast<int>(id));
    return address;
}

bool ModuleBase::LoadAcceleratorsA(unsigned int id) {
    if (m_hAccel != nullptr)
        DestroyAcceleratorTable(m_hAccel);
    m_hAccel = LoadAcceleratorsFromResource(id);
    return m_hAccel != nullptr;
}

HACCEL ModuleBase::LoadAcceleratorsFromResource(unsigned int id) {
    return ::LoadAcceleratorsA(m_hResource, Number(id));
}

void ModuleBase::SetAccelerators(HACCEL table) {
    m_hAccel = table;
}

HACCEL ModuleBase::GetAccelerators() const {
    return m_hAccel;
}
