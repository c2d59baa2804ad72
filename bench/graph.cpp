#include "bench/graph/Graph.h"
#include "bench/support/Areas.h"
#include "bench/support/Random.h"

#include <kelcore/runtime.h>
#include <kelcore/stream.h>

#include <memory>
#include <optional>
#include <stdexcept>

namespace kel::bench {

/// The node of the library's own graph; a link is one to any object that can be stored.
class Node : public ISerializable, public virtual KelUnknown {
public:
    void Read(SerializingInputStream& stream, short) override {
        left = stream.ReadRef();
        right = stream.ReadRef();
        stream >> number >> text;
    }
    void Write(SerializingOutputStream& stream) const override {
        stream.WriteRef(left);
        stream.WriteRef(right);
        stream << number << text;
    }
    short Version() const override { return 1; }

    ISerializable* left = nullptr;
    ISerializable* right = nullptr;
    int number = 0;
    std::uint32_t mark = 0;
    std::string text;
};

namespace {

Node& ToNode(ISerializable* object) {
    return static_cast<Node&>(*object);
}

Node* Create(int number, const std::string& text) {
    Node* const node = new Node;
    node->number = number;
    node->text = text;
    return node;
}

template <class Pointer>
void Release(const std::vector<Pointer>& nodes) {
    for (Pointer node : nodes)
        node->Release();
}

class Store : public GraphStore {
public:
    Store() { m_factory.RegisterType<Node>(); }
    ~Store() override { Release(m_built); }

    void Build(const std::vector<NodePlan>& plan) override { m_built = BuildNodes<Node*>(plan, Create); }

    void Write() override {
        m_sink.emplace();
        SerializingOutputStream stream(m_factory, *m_sink);
        stream.WriteRef(m_built.front());
    }

    void Read() override {
        if (m_block.empty())
            m_block = m_sink->GetContent();
        MemoryInputStream source(m_block);
        SerializingInputStream stream(m_factory, source);
        m_read = stream.ReadRef();
    }

    void Drop() override { Release(Reached(m_read, ToNode)); }

    std::string List() override { return Listing(m_read, ToNode); }

private:
    ObjectFactory m_factory;
    std::vector<Node*> m_built;
    std::optional<MemoryOutputStream> m_sink;
    std::string m_block;
    ISerializable* m_read = nullptr;
};

const auto entered = EnterGraphStore<Store>("kelcore");

std::shared_ptr<GraphStore> Built(const GraphPeer& peer, const std::vector<NodePlan>& plan) {
    std::shared_ptr<GraphStore> store = peer.make();
    store->Build(plan);
    return store;
}

std::string ListAndDrop(GraphStore& store) {
    store.Read();
    const std::string listed = store.List();
    store.Drop();
    return listed;
}

Call Writing(const GraphPeer& peer) {
    const std::shared_ptr<GraphStore> store = Built(peer, ShallowPlan());
    const auto result = [store] {
        store->Write();
        return ListAndDrop(*store);
    };
    return {[store] { store->Write(); }, result};
}

Call Reading(const GraphPeer& peer) {
    const std::shared_ptr<GraphStore> store = Built(peer, ShallowPlan());
    store->Write();
    return {[store] { store->Read(); }, [store] { return ListAndDrop(*store); }, [store] { store->Drop(); }};
}

// A ring, each node with one more link somewhere: a walk along the links goes 200,000 nodes deep.
std::vector<NodePlan> DeepPlan() {
    Random random(4);
    std::vector<NodePlan> plan;
    for (std::size_t i = 0; i < kNodes; ++i)
        plan.push_back({(i + 1) % kNodes, random.Below(kNodes), static_cast<int>(i), random.Letters(8)});
    return plan;
}

// All peers recurse and overflow the usual stack here.
std::string StateDeepGraph() {
    Store store;
    store.Build(DeepPlan());
    try {
        store.Write();
    } catch (const StreamBase::Exception& refused) {
        if (refused.code != 2)
            throw std::runtime_error("a deep graph ended in code " + std::to_string(refused.code));
        return "a ring of 200,000 nodes ends in the defined exception, code 2 (every peer overflows the stack)";
    }
    if (ListAndDrop(store).empty())
        throw std::runtime_error("a deep graph came back empty");
    return "a ring of 200,000 nodes is written and read (every peer overflows the stack)";
}

} // namespace

const std::vector<NodePlan>& ShallowPlan() {
    static const std::vector<NodePlan> shallow = [] {
        Random random(3);
        const auto ancestor = [&random](std::size_t node) {
            for (std::uint32_t steps = 1 + random.Below(16); steps > 0 && node > 0; --steps)
                node = (node - 1) / 2;
            return node;
        };
        std::vector<NodePlan> plan;
        for (std::size_t i = 0; i < kNodes; ++i) {
            const auto child = [&](std::size_t at) { return at < kNodes ? at : ancestor(i); };
            plan.push_back({child(2 * i + 1), child(2 * i + 2), static_cast<int>(random.Below(0x7FFFFFFF)),
                            random.Letters(6 + random.Below(7))});
        }
        return plan;
    }();
    return shallow;
}

void AddGraphJobs() {
    for (const GraphPeer& peer : Contenders<GraphPeer>()) {
        AddJob("graph", peer.who, "write 200k nodes", [peer] { return Writing(peer); });
        AddJob("graph", peer.who, "read 200k nodes", [peer] { return Reading(peer); });
    }
    AddNote("graph", StateDeepGraph);
}

} // namespace kel::bench
