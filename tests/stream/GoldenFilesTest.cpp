// Stored files are read and written again byte for byte on every target. KELCORE_UPDATE_GOLDEN in the environment makes
// the tests store what they write instead.

#include "tests/stream/Probes.h"
#include "tests/stream/SampleGraph.h"

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace {

std::string Golden(const std::string& name, const std::string& written) {
    const std::string path = std::string(KELCORE_TEST_DATA) + "/golden/" + name;
    if (std::getenv("KELCORE_UPDATE_GOLDEN") != nullptr)
        std::ofstream(path, std::ios::binary) << written;
    std::ifstream file(path, std::ios::binary);
    REQUIRE(file);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

void CheckSampleGraph(const SampleGroup& group) {
    REQUIRE(group.members.size() == 9);
    const auto* values = dynamic_cast<const SampleValues*>(group.members[0]);
    const auto* first = dynamic_cast<const SampleNode*>(group.members[2]);
    const auto* old = dynamic_cast<const SampleValues*>(group.members[3]);
    const auto* caption = dynamic_cast<const SampleCaption*>(group.members[6]);
    REQUIRE((values != nullptr && first != nullptr && old != nullptr && caption != nullptr));
    CHECK((values->big == 0x0123456789ABCDEF && values->mask == 0x80000001ul && values->length == -7));
    CHECK((values->title.size() == 4 && old->title.empty() && old->version == 1));
    CHECK((first->right == values && group.members[5] == values && group.members[1] == nullptr));
    const auto* second = dynamic_cast<const SampleNode*>(first->left);
    CHECK((second == group.members[4] && second->left == first && second->right == second));
    CHECK((group.caption.text == "shared" && caption->text == "shared"));
    CHECK((group.members[7] != caption && group.members[8] == caption));
}

// Writes the graph through a layer to a file of the tests' data and reads it back from there.
template <class OutputLayer, class InputLayer>
void Exchange(const std::string& name, std::size_t longText) {
    SampleFactory factory;
    const auto write = [&factory](const SampleGroup& group) {
        MemoryOutputStream memory;
        OutputLayer layer(memory);
        SerializingOutputStream(factory, layer).Write(group);
        layer.Flush();
        return memory.GetContent();
    };
    const std::string written = write(*BuildSampleGraph(longText));
    const std::string stored = Golden(name, written);
    CHECK((stored == written));
    SampleObject::EndAll();
    MemoryInputStream memory(stored);
    InputLayer layer(memory);
    {
        SerializingInputStream in(factory, layer);
        auto* const group = dynamic_cast<SampleGroup*>(in.Create());
        REQUIRE(group != nullptr);
        CheckSampleGraph(*group);
        CHECK((write(*group) == stored));
    }
    SampleObject::EndAll();
    char byte = 0;
    CHECK(Failure([&] { layer.Read(&byte, 1); }) == "4: Memory block too short");
}

// Object streams without a layer.
struct PlainSink : OutputStream {
    explicit PlainSink(OutputStream& inner) : m_inner(inner) {}
    void Write(const char* data, int count) override { m_inner.Write(data, count); }
    OutputStream& m_inner;
};

struct PlainSource : InputStream {
    explicit PlainSource(InputStream& inner) : m_inner(inner) {}
    void Read(char* data, int count) override { m_inner.Read(data, count); }
    InputStream& m_inner;
};

} // namespace

TEST_CASE("stored object graphs are the same on every target") {
    Exchange<PlainSink, PlainSource>("objects.bin", 20);
    Exchange<CRCOutputStream, CRCInputStream>("objects-crc.bin", 5000);
    Exchange<CryptingOutputStream, CryptingInputStream>("objects-scrambled.bin", 20);
}
