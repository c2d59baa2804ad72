#include "platform/modules/PeImage.h"

#include "platform/kernel/LastError.h"
#include "platform/modules/Bytes.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

namespace kel::platform {
namespace {

// Offsets and sizes of "PE Format" of the Windows documentation.
constexpr std::size_t kDosHeader = 64;
constexpr std::size_t kDosNewHeader = 60;
constexpr std::size_t kFileHeader = 24; // the signature included
constexpr std::size_t kSectionCount = 6;
constexpr std::size_t kOptionalSize = 20;
constexpr std::size_t kSectionHeader = 40;
constexpr std::size_t kResourceDirectory = 2 * 8; // the third of the data directories, 8 bytes each
constexpr std::uint16_t kPe32 = 0x10B;
constexpr std::uint16_t kPe32Plus = 0x20B;

/// A section's place in the file and in the image.
struct Section {
    std::uint32_t virtualSize;
    std::uint32_t address;
    std::uint32_t rawSize;
    std::uint32_t rawOffset;

    bool Holds(std::uint32_t at) const { return at >= address && at - address < std::max(virtualSize, rawSize); }
};

class PeFile {
public:
    explicit PeFile(int descriptor) : m_descriptor(descriptor) {
        struct stat facts;
        if (fstat(descriptor, &facts) == 0 && S_ISREG(facts.st_mode))
            m_size = static_cast<std::uint64_t>(facts.st_size);
    }

    PeResult Read(ResourceSection& section) {
        if (!ReadFileHeader())
            return PeResult::NoImage;
        std::uint32_t resources = 0;
        if (!FindResources(resources))
            return PeResult::Cut;
        if (resources == 0)
            return PeResult::Read;
        Section place;
        return FindSection(resources, place) && Copy(place, resources, section) ? PeResult::Read : PeResult::Cut;
    }

private:
    // The bytes at an offset. All of them, or none: nothing is allocated for what the file does not have.
    bool Load(std::uint64_t offset, std::size_t count, std::vector<char>& bytes) const {
        if (offset > m_size || count > m_size - offset)
            return false;
        bytes.resize(count);
        std::size_t done = 0;
        while (done < count) {
            const ssize_t moved = Uninterrupted([&] {
                return pread(m_descriptor, bytes.data() + done, count - done, static_cast<off_t>(offset + done));
            });
            if (moved <= 0)
                return false;
            done += static_cast<std::size_t>(moved);
        }
        return true;
    }

    bool ReadFileHeader() {
        std::vector<char> bytes;
        if (!Load(/*offset*/ 0, kDosHeader, bytes) || bytes[0] != 'M' || bytes[1] != 'Z')
            return false;
        m_header = Bytes(bytes.data(), bytes.size()).DWord(kDosNewHeader);
        if (!Load(m_header, kFileHeader, bytes) || std::string_view(bytes.data(), 4) != std::string_view("PE\0\0", 4))
            return false;
        const Bytes header(bytes.data(), bytes.size());
        m_sections = header.Word(kSectionCount);
        m_optionalSize = header.Word(kOptionalSize);
        return true;
    }

    // Where the image has its resources; 0 for nowhere.
    bool FindResources(std::uint32_t& resources) const {
        std::vector<char> bytes;
        if (!Load(m_header + kFileHeader, m_optionalSize, bytes) || bytes.size() < 2)
            return false;
        const Bytes header(bytes.data(), bytes.size());
        const std::uint16_t magic = header.Word(0);
        if (magic != kPe32 && magic != kPe32Plus)
            return false;
        const std::size_t directories = magic == kPe32 ? 96 : 112;
        if (!header.Has(directories, 0))
            return false;
        const bool listed = header.DWord(directories - 4) > kResourceDirectory / 8;
        if (listed && header.Has(directories + kResourceDirectory, 8))
            resources = header.DWord(directories + kResourceDirectory);
        return true;
    }

    bool FindSection(std::uint32_t resources, Section& found) const {
        std::vector<char> bytes;
        if (!Load(m_header + kFileHeader + m_optionalSize, m_sections * kSectionHeader, bytes))
            return false;
        const Bytes headers(bytes.data(), bytes.size());
        for (std::size_t at = 0; at < headers.Size(); at += kSectionHeader) {
            found = {headers.DWord(at + 8), headers.DWord(at + 12), headers.DWord(at + 16), headers.DWord(at + 20)};
            if (found.Holds(resources))
                return true;
        }
        return false;
    }

    bool Copy(const Section& place, std::uint32_t resources, ResourceSection& section) const {
        section.address = place.address;
        section.root = resources - place.address;
        return Load(place.rawOffset, place.rawSize, section.bytes);
    }

    const int m_descriptor;
    std::uint64_t m_size = 0;
    std::uint64_t m_header = 0;
    std::size_t m_sections = 0;
    std::size_t m_optionalSize = 0;
};

} // namespace

PeResult ReadResourceSection(int descriptor, ResourceSection& section) {
    return PeFile(descriptor).Read(section);
}

} // namespace kel::platform
