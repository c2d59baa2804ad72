#include "tests/stream/Probes.h"
#include "tests/stream/SampleGraph.h"
#include "tests/support/AllocationMeter.h"

#include <functional>
#include <thread>

namespace {

// Reads a graph from @p stored. @return what that throws.
std::string ReadGraph(const std::string& stored) {
    SampleFactory factory;
    MemoryInputStream memory(stored);
    SerializingInputStream in(factory, memory);
    return Failure([&] { in.ReadRef(); });
}

std::string WriteGraph(const ISerializable& graph, std::string& stored) {
    SampleFactory factory;
    MemoryOutputStream memory;
    SerializingOutputStream out(factory, memory);
    const std::string failure = Failure([&] { out.WriteRef(&graph); });
    stored = memory.GetContent();
    return failure;
}

// Ends in success or in an exception of the streams, nothing else, having asked for little more memory than the bytes
// that arrived justify: one piece of a text, and the objects of the records.
void ReadDamaged(const std::string& stored) {
    const std::size_t before = AllocatedSoFar();
    const std::string failure = ReadGraph(stored);
    const bool bounded = AllocatedSoFar() - before <= 2 * 65536 + 100 * stored.size();
    const bool defined = failure.empty() || (failure[0] >= '2' && failure[0] <= '5');
    bool balanced = true;
    for (SampleObject* object : SampleObject::Alive())
        balanced = balanced && (object->Count() == 1 || dynamic_cast<SampleCaption*>(object) != nullptr);
    SampleObject::EndAll();
    REQUIRE((bounded && defined && balanced));
}

// As many nodes, each inside the one before, as a stack cannot hold.
std::string NestedBytes(std::uint32_t depth) {
    SampleFactory factory;
    MemoryOutputStream memory;
    for (std::uint32_t i = 0; i < depth; ++i)
        memory << 0u << 0x80190311u << 2 * i + 1 << factory.GetClassID(typeid(SampleNode)) << static_cast<short>(1);
    return memory.GetContent();
}

std::string OnThread(const std::function<std::string()>& work) {
    std::string result;
    std::thread([&] { result = work(); }).join();
    return result;
}

} // namespace

TEST_CASE("no truncation and no flipped bit of a stream does harm") {
    std::string sound;
    WriteGraph(*BuildSampleGraph(20), sound);
    SampleObject::EndAll();
    CHECK(ReadGraph(sound) == "");
    SampleObject::EndAll();
    for (std::size_t bit = 0; bit < 8 * sound.size(); ++bit) {
        CAPTURE(bit);
        ReadDamaged(sound.substr(0, bit / 8));
        ReadDamaged(WithFlipped(sound, bit));
    }
}

TEST_CASE("nesting ends in an exception before the stack does, on every thread") {
    constexpr std::uint32_t kDepth = 200000;
    const std::string refused = "2: Unexpected object in stream";
    std::string stored = NestedBytes(kDepth);
    CHECK(OnThread([&] { return ReadGraph(stored); }) == refused);
    ReadGraph(stored);
    CHECK(SampleObject::Alive().empty());

    std::vector<SampleNode*> ring(kDepth);
    for (SampleNode*& node : ring)
        node = new SampleNode;
    for (std::size_t i = 0; i < ring.size(); ++i)
        ring[i]->left = ring[(i + 1) % ring.size()];
    CHECK(OnThread([&] { return WriteGraph(*ring[0], stored); }) == refused);
    WriteGraph(*ring[0], stored);
    SampleObject::EndAll();
}
