#include "platform/modules/ResourceTree.h"

#include "platform/kernel/HostText.h"
#include "platform/kernel/LastError.h"

#include <kelcore/platform/languages.h>
#include <kelcore/platform/resources.h>

#include <algorithm>

namespace kel::platform {
namespace {

constexpr std::uint32_t kHighBit = 0x80000000u; // a text instead of a number, a directory instead of data
constexpr std::size_t kDirectory = 16;
constexpr std::size_t kEntry = 8;
constexpr std::size_t kRecord = 16;
constexpr LANGID kEnglish = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);

} // namespace

bool ParseResourceName(LPCSTR name, ResourceName& parsed) {
    if (IS_INTRESOURCE(name)) {
        parsed.number = static_cast<std::uint16_t>(reinterpret_cast<ULONG_PTR>(name));
        return true;
    }
    if (*name != '#') {
        parsed.text = FoldName(Utf8FromAnsi(name));
        return true;
    }
    std::uint32_t number = 0;
    for (const char* digit = name + 1; *digit >= '0' && *digit <= '9' && number < 0x10000; ++digit)
        number = number * 10 + static_cast<std::uint32_t>(*digit - '0');
    parsed.number = static_cast<std::uint16_t>(number);
    return number < 0x10000 || Fail(ERROR_INVALID_PARAMETER);
}

ResourceTree::ResourceTree(const ResourceSection& section) : m_section(section) {
    if (section.root < section.bytes.size())
        m_tree = Bytes(section.bytes.data() + section.root, section.bytes.size() - section.root);
}

bool ResourceTree::Open(std::size_t offset, Directory& directory) const {
    if (!m_tree.Has(offset, kDirectory))
        return false;
    directory = {offset + kDirectory, m_tree.Word(offset + 12), m_tree.Word(offset + 14)};
    return m_tree.Has(directory.entries, (directory.named + directory.numbered) * kEntry);
}

bool ResourceTree::Descend(std::uint32_t target, Directory& directory) const {
    return (target & kHighBit) && Open(target & ~kHighBit, directory);
}

// Numbered entries stand in order, so that halving finds them; a file that does not keep the order is read through.
bool ResourceTree::FindNumber(const Directory& directory, std::uint32_t number, std::uint32_t& target) const {
    const std::size_t first = directory.entries + directory.named * kEntry;
    const auto numberAt = [&](std::size_t index) { return m_tree.DWord(first + index * kEntry); };
    std::size_t low = 0;
    for (std::size_t high = directory.numbered; low < high;) {
        const std::size_t middle = (low + high) / 2;
        numberAt(middle) < number ? low = middle + 1 : high = middle;
    }
    if (low == directory.numbered || numberAt(low) != number)
        for (low = 0; low < directory.numbered && numberAt(low) != number;)
            ++low;
    if (low == directory.numbered)
        return false;
    target = m_tree.DWord(first + low * kEntry + 4);
    return true;
}

bool ResourceTree::NameIs(std::uint32_t offset, const std::u16string& text) const {
    const std::size_t at = offset & ~kHighBit;
    return (offset & kHighBit) && m_tree.Has(at, 2) && m_tree.Word(at) == text.size() &&
           m_tree.Has(at + 2, text.size() * 2) &&
           std::memcmp(m_tree.Data() + at + 2, text.data(), text.size() * 2) == 0;
}

bool ResourceTree::FindText(const Directory& directory, const std::u16string& text, std::uint32_t& target) const {
    for (std::size_t index = 0; index < directory.named; ++index) {
        const std::size_t at = directory.entries + index * kEntry;
        if (NameIs(m_tree.DWord(at), text)) {
            target = m_tree.DWord(at + 4);
            return true;
        }
    }
    return false;
}

bool ResourceTree::FindEntry(const Directory& directory, const ResourceName& name, std::uint32_t& target) const {
    return name.text.empty() ? FindNumber(directory, name.number, target) : FindText(directory, name.text, target);
}

bool ResourceTree::FindLanguage(const Directory& directory, LANGID language, std::uint32_t& target) const {
    const auto found = [&](LANGID id) { return FindNumber(directory, id, target); };
    if (found(language) || found(PRIMARYLANGID(language)) || found(LANG_NEUTRAL))
        return true;
    if (PRIMARYLANGID(language) != LANG_NEUTRAL)
        return false;
    const LANGID system = GetSystemDefaultLangID();
    if (found(system) || found(PRIMARYLANGID(system)) || found(kEnglish))
        return true;
    if (directory.named + directory.numbered == 0)
        return false;
    target = m_tree.DWord(directory.entries + 4);
    return true;
}

const char* ResourceTree::Find(const ResourceName& type, const ResourceName& name, LANGID language) const {
    Directory directory;
    std::uint32_t target;
    if (!Open(/*offset*/ 0, directory))
        return Fail(ERROR_RESOURCE_DATA_NOT_FOUND), nullptr;
    if (!FindEntry(directory, type, target) || !Descend(target, directory))
        return Fail(ERROR_RESOURCE_TYPE_NOT_FOUND), nullptr;
    if (!FindEntry(directory, name, target) || !Descend(target, directory))
        return Fail(ERROR_RESOURCE_NAME_NOT_FOUND), nullptr;
    if (!FindLanguage(directory, language, target))
        return Fail(ERROR_RESOURCE_LANG_NOT_FOUND), nullptr;
    if (!m_tree.Has(target, kRecord)) // a directory, with its high bit, is out of reach as well
        return Fail(ERROR_RESOURCE_DATA_NOT_FOUND), nullptr;
    Bytes data;
    const char* record = m_tree.Data() + target;
    return Data(record, data) ? record : nullptr;
}

bool ResourceTree::Data(const void* record, Bytes& data) const {
    // As numbers: what is asked for may be a pointer to anything.
    const auto at = reinterpret_cast<std::uintptr_t>(record) - reinterpret_cast<std::uintptr_t>(m_tree.Data());
    if (record == nullptr || !m_tree.Has(at, kRecord))
        return Fail(ERROR_RESOURCE_DATA_NOT_FOUND);
    const std::uint32_t address = m_tree.DWord(at);
    const std::uint32_t size = m_tree.DWord(at + 4);
    const Bytes bytes(m_section.bytes.data(), m_section.bytes.size());
    if (address < m_section.address || !bytes.Has(address - m_section.address, size))
        return Fail(ERROR_RESOURCE_DATA_NOT_FOUND);
    data = Bytes(bytes.Data() + (address - m_section.address), size);
    return true;
}

} // namespace kel::platform
