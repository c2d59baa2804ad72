#pragma once

#include "platform/modules/Bytes.h"
#include "platform/modules/PeImage.h"

#include <string>

namespace kel::platform {

/// A type or name of a resource: a number, or a text in capitals.
struct ResourceName {
    std::uint16_t number = 0;
    std::u16string text; ///< not empty for a text
};

/// @param name a number below 65536, a text "#123", or a name in the ANSI code page.
/// @return false with the last error ERROR_INVALID_PARAMETER for a number that is too large.
bool ParseResourceName(LPCSTR name, ResourceName& parsed);

/// The tree of types, names and languages in a resource section. The bytes may be anything: every offset is checked
/// where it is used, and no path is longer than the three levels.
class ResourceTree {
public:
    /// @param section must outlive the tree.
    explicit ResourceTree(const ResourceSection& section);

    /// The record of a resource, as FindResourceExA describes it; null with the last error set.
    const char* Find(const ResourceName& type, const ResourceName& name, LANGID language) const;

    /// The bytes of a resource. @param record what Find gave, or anything else.
    /// @return false with the last error ERROR_RESOURCE_DATA_NOT_FOUND for what is no record of this tree.
    bool Data(const void* record, Bytes& data) const;

private:
    /// A directory: named entries, then numbered ones.
    struct Directory {
        std::size_t entries; ///< where they begin
        std::size_t named;
        std::size_t numbered;
    };

    bool Open(std::size_t offset, Directory& directory) const;
    bool Descend(std::uint32_t target, Directory& directory) const;
    bool FindEntry(const Directory& directory, const ResourceName& name, std::uint32_t& target) const;
    bool FindNumber(const Directory& directory, std::uint32_t number, std::uint32_t& target) const;
    bool FindText(const Directory& directory, const std::u16string& text, std::uint32_t& target) const;
    bool FindLanguage(const Directory& directory, LANGID language, std::uint32_t& target) const;
    bool NameIs(std::uint32_t offset, const std::u16string& text) const;

    const ResourceSection& m_section;
    Bytes m_tree; ///< from the root on: the offsets in the tree count from there
};

} // namespace kel::platform
