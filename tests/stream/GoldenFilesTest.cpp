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
        // Every value, version and shared pointer shows in the bytes.
        CHECK((write(*group) == stored));
    }
    SampleObject::EndAll();
    char byte = 0;
    CHECK(Failure([&] { layer.Read(&byte, 1); }) == kTooShort);
}

} // namespace

TEST_CASE("stored object graphs are the same on every target") {
    Exchange<MemoryOutputStream&, MemoryInputStream&>("objects.bin", 20);
    Exchange<CRCOutputStream, CRCInputStream>("objects-crc.bin", 5000);
    Exchange<CryptingOutputStream, CryptingInputStream>("objects-scrambled.bin", 20);
}
