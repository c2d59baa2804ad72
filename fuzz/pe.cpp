// Resources of PE files from foreign bytes: the image read from a file in memory, and numbers, names and languages
// looked for in it, each record that is found read to its end. Where the image is none, the bytes are taken as the tree
// itself.

#include "platform/modules/ResourceTree.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <numeric>

using namespace kel::platform;

namespace {

void Sum(const ResourceTree& tree, const char* record) {
    Bytes data;
    if (!record)
        return;
    if (!tree.Data(record, data))
        __builtin_trap();
    volatile unsigned sum = 0;
    sum = std::accumulate(data.Data(), data.Data() + data.Size(), sum);
}

void LookAround(const ResourceSection& section) {
    const ResourceTree tree(section);
    const ResourceName names[] = {{1, {}},  {2, {}},  {6, {}},         {7, {}},    {9, {}},
                                  {10, {}}, {16, {}}, {0, u"PICTURE"}, {0, u"ALL"}};
    for (const ResourceName& type : names)
        for (const ResourceName& name : names)
            for (const LANGID language : {LANGID{0}, LANGID{0x0409}, LANGID{0x0C07}})
                Sum(tree, tree.Find(type, name, language));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const int file = memfd_create("image", 0);
    if (size > 100000 || ftruncate(file, 0) == -1 || pwrite(file, data, size, 0) != static_cast<ssize_t>(size))
        return 0;
    ResourceSection section;
    if (ReadResourceSection(file, section) == PeResult::NoImage)
        section.bytes.assign(data, data + size);
    LookAround(section);
    return 0;
}
