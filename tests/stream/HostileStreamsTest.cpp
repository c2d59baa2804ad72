#include "tests/stream/AllocationMeter.h"
#include "tests/stream/Probes.h"
#include "tests/stream/SampleGraph.h"

#include <functional>
#include <thread>

namespace {

using Reader = void (*)(const std::string& stored);

void ReadGraph(const std::string& stored) {
    static SampleFactory& factory = *new SampleFactory;
    MemoryInputStream memory(stored);
    SerializingInputStream(factory, memory).Create();
}

void ReadGraphInBlocks(const std::string& stored) {
    static SampleFactory& factory = *new SampleFactory;
    MemoryInputStream memory(stored);
    CRCInputStream blocks(memory);
    SerializingInputStream(factory, blocks).Create();
}

void ReadTyped(const std::string& stored) {
    MemoryInputStream memory(stored);
    bool flag;
    __int64 big;
    NarrowString narrow;
    WideString wide;
    for (int i = 0; i < 4; ++i)
        memory >> flag >> narrow >> big >> wide;
}

std::string GraphBytes(bool blocks) {
    SampleFactory factory;
    MemoryOutputStream memory;
    {
        CRCOutputStream layer(memory);
        SerializingOutputStream out(factory, blocks ? static_cast<OutputStream&>(layer) : memory);
        out.Write(*BuildSampleGraph(20));
    }
    SampleObject::EndAll();
    return memory.GetContent();
}

std::string TypedBytes() {
    MemoryOutputStream memory;
    for (int i = 0; i < 4; ++i)
        memory << (i == 2) << NarrowString(5, 'n') << static_cast<__int64>(i) << WideString(3, 0x4E2D);
    return memory.GetContent();
}

// Ends in success or in an exception of the streams, nothing else, having asked for little more memory than the bytes
// that arrived justify: one piece of a text, and the objects of the records.
void ReadDamaged(Reader read, const std::string& stored) {
    const std::size_t before = AllocatedSoFar();
    const std::string failure = Failure([&] { read(stored); });
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

std::string ReadNested(const std::string& stored) {
    SampleFactory factory;
    MemoryInputStream memory(stored);
    SerializingInputStream in(factory, memory);
    return Failure([&] { in.ReadRef(); });
}

std::string WriteRing(const ISerializable& ring) {
    SampleFactory factory;
    MemoryOutputStream memory;
    SerializingOutputStream out(factory, memory);
    return Failure([&] { out.WriteRef(&ring); });
}

std::string OnThread(const std::function<std::string()>& work) {
    std::string result;
    std::thread([&] { result = work(); }).join();
    return result;
}

} // namespace

TEST_CASE("no truncation and no flipped bit of a stream does harm") {
    const struct {
        Reader read;
        std::string sound;
    } rows[] = {{ReadGraph, GraphBytes(false)}, {ReadGraphInBlocks, GraphBytes(true)}, {ReadTyped, TypedBytes()}};
    for (const auto& row : rows) {
        CHECK(Failure([&] { row.read(row.sound); }) == "");
        SampleObject::EndAll();
        for (std::size_t size = 0; size < row.sound.size(); ++size) {
            CAPTURE(size);
            ReadDamaged(row.read, row.sound.substr(0, size));
        }
        for (std::size_t bit = 0; bit < 8 * row.sound.size(); ++bit) {
            CAPTURE(bit);
            std::string damaged = row.sound;
            damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (1 << bit % 8));
            ReadDamaged(row.read, damaged);
        }
    }
}

TEST_CASE("nesting ends in an exception before the stack does, on every thread") {
    constexpr std::uint32_t kDepth = 200000;
    const std::string refused = "2: Unexpected object in stream";
    const std::string stored = NestedBytes(kDepth);
    CHECK(OnThread([&] { return ReadNested(stored); }) == refused);
    ReadNested(stored);
    CHECK(SampleObject::Alive().empty());

    std::vector<SampleNode*> ring(kDepth);
    for (SampleNode*& node : ring)
        node = new SampleNode;
    for (std::size_t i = 0; i < ring.size(); ++i)
        ring[i]->left = ring[(i + 1) % ring.size()];
    CHECK(OnThread([&] { return WriteRing(*ring[0]); }) == refused);
    WriteRing(*ring[0]);
    SampleObject::EndAll();
}
