#include "platform/modules/VersionRecord.h"

#include "platform/kernel/HostText.h"
#include "platform/kernel/LastError.h"

#include <kelcore/platform/codepages.h>

#include <algorithm>
#include <string>

namespace kel::platform {
namespace {

constexpr std::size_t kNodeHeader = 6;
constexpr char16_t kRootKey[] = u"VS_VERSION_INFO";
// The root's key ends at 38, its value begins at 40. The padding between says whether the room is there.
constexpr std::size_t kRootEnd = kNodeHeader + sizeof kRootKey;
constexpr std::size_t kHead = kRootEnd + 2;
constexpr std::uint16_t kWithRoom = 0x4B52;

std::size_t Aligned(std::size_t offset) {
    return (offset + 3) & ~std::size_t{3};
}

/// A part of a record: lengths, a key, a value, and further parts. Each begins at a multiple of 4.
struct Node {
    std::size_t end = 0;
    std::string key; ///< in UTF-8
    bool isText = false;
    std::size_t value = 0;
    std::size_t valueSize = 0; ///< in bytes
};

std::string Convert(UINT page, const char16_t* units, std::size_t count) {
    if (count == 0)
        return {};
    std::string text(count * 4, '\0');
    const int size = WideCharToMultiByte(page, 0, reinterpret_cast<const WCHAR*>(units), static_cast<int>(count),
                                         text.data(), static_cast<int>(text.size()), nullptr, nullptr);
    text.resize(static_cast<std::size_t>(size));
    return text;
}

// The text at an offset, up to its terminator or the given end.
std::u16string TextAt(const Bytes& record, std::size_t at, std::size_t end) {
    std::u16string text;
    for (; at + 2 <= end && record.Word(at) != 0; at += 2)
        text += static_cast<char16_t>(record.Word(at));
    return text;
}

// The node at an offset, which ends by @p limit. The value's size counts units in texts; whatever it says, the value
// does not leave the node.
bool ReadNode(const Bytes& record, std::size_t at, std::size_t limit, Node& node) {
    if (at + kNodeHeader > limit || record.Word(at) < kNodeHeader)
        return false;
    node.end = std::min(at + record.Word(at), limit);
    const std::u16string key = TextAt(record, at + kNodeHeader, node.end);
    node.key = Convert(CP_UTF8, key.data(), key.size());
    node.isText = record.Word(at + 4) == 1;
    node.value = std::min(Aligned(at + kNodeHeader + (key.size() + 1) * 2), node.end);
    node.valueSize = std::min<std::size_t>(record.Word(at + 2) * (node.isText ? 2u : 1u), node.end - node.value);
    return true;
}

bool FindChild(const Bytes& record, const Node& parent, std::string_view name, Node& child) {
    const std::u16string wanted = FoldName(name);
    std::size_t at = Aligned(parent.value + parent.valueSize);
    for (; ReadNode(record, at, parent.end, child); at = Aligned(child.end))
        if (FoldName(child.key) == wanted)
            return true;
    return false;
}

// Walks down the path; empty components count for nothing.
bool FindNode(const Bytes& record, std::string_view path, Node& node) {
    if (!ReadNode(record, /*at*/ 0, record.Size(), node))
        return false;
    while (!path.empty()) {
        const std::string_view name = path.substr(0, path.find('\\'));
        path.remove_prefix(std::min(name.size() + 1, path.size()));
        const Node parent = node;
        if (!name.empty() && !FindChild(record, parent, name, node))
            return false;
    }
    return true;
}

// Puts a text into the room of its block; the room is the caller's, though it hands the block over as constant.
bool GiveVersionText(const char* block, const Bytes& record, const Node& node, LPVOID* value, UINT* length) {
    if (record.Size() < kHead || record.Word(kRootEnd) != kWithRoom)
        return Fail(ERROR_INVALID_DATA);
    const std::u16string wide = TextAt(record, node.value, node.value + node.valueSize);
    const std::string text = Convert(CP_ACP, wide.data(), wide.size());
    char* room = const_cast<char*>(block) + Aligned(record.Size()) + node.value * 2;
    std::memcpy(room, text.c_str(), text.size() + 1);
    *value = room;
    *length = node.valueSize == 0 ? 0 : static_cast<UINT>(text.size() + 1);
    return true;
}

bool HasFixedPart(const Bytes& record, const Node& root) {
    return root.valueSize >= sizeof(VS_FIXEDFILEINFO) && record.DWord(root.value) == VS_FFI_SIGNATURE;
}

} // namespace

std::size_t VersionBlockSize(const Bytes& record) {
    if (record.Size() < kHead || record.Word(0) < kHead)
        return 0;
    if (std::memcmp(record.Data() + kNodeHeader, kRootKey, sizeof kRootKey) != 0)
        return 0;
    const std::size_t size = Aligned(std::min<std::size_t>(record.Word(0), record.Size()));
    return size + size * 2 + 4;
}

void FillVersionBlock(const Bytes& record, char* block, std::size_t size) {
    std::string whole(record.Data(), std::min<std::size_t>(record.Word(0), record.Size()));
    const auto length = static_cast<std::uint16_t>(std::min(whole.size(), size));
    const std::uint16_t room = size >= VersionBlockSize(record) ? kWithRoom : 0;
    std::memcpy(whole.data(), &length, sizeof length);
    std::memcpy(whole.data() + kRootEnd, &room, sizeof room);
    std::memcpy(block, whole.data(), length);
}

bool QueryVersionBlock(const char* block, LPCSTR path, LPVOID* value, UINT* length) {
    const Bytes record(block, Bytes(block, sizeof(std::uint16_t)).Word(0));
    Node node;
    *value = nullptr;
    *length = 0;
    if (!FindNode(record, Utf8FromAnsi(path), node))
        return Fail(ERROR_RESOURCE_TYPE_NOT_FOUND);
    const bool isRoot = std::string_view(path).find_first_not_of('\\') == std::string_view::npos;
    if (isRoot && !HasFixedPart(record, node))
        return Fail(ERROR_INVALID_DATA);
    if (node.isText)
        return GiveVersionText(block, record, node, value, length);
    *value = const_cast<char*>(block) + node.value;
    *length = static_cast<UINT>(node.valueSize);
    return true;
}

} // namespace kel::platform
