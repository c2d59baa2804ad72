#include "bench/graph/Graph.h"
#include "bench/support/LeanStreambuf.h"

#include <boost/archive/binary_iarchive.hpp>
#include <boost/archive/binary_oarchive.hpp>
#include <boost/serialization/string.hpp>

#include <optional>

namespace kel::bench::boost_raw {

struct Node {
    Node* left = nullptr;
    Node* right = nullptr;
    int number = 0;
    std::uint32_t mark = 0;
    std::string text;

    template <class Archive>
    void serialize(Archive& archive, unsigned) {
        archive& left& right& number& text;
    }
};

namespace {

Node& ToNode(Node* node) {
    return *node;
}

void Free(const std::vector<Node*>& nodes) {
    for (const Node* node : nodes)
        delete node;
}

class Store : public GraphStore {
public:
    ~Store() override { Free(m_built); }

    void Build(const std::vector<NodePlan>& plan) override {
        m_built = BuildNodes<Node*>(plan, [](int number, const std::string& text) {
            return new Node{nullptr, nullptr, number, 0, text};
        });
    }

    void Write() override {
        m_sink.emplace();
        boost::archive::binary_oarchive archive(*m_sink, boost::archive::no_header);
        const Node* const root = m_built.front();
        archive << root;
    }

    void Read() override {
        LeanInput source(m_sink->Content());
        boost::archive::binary_iarchive archive(source, boost::archive::no_header);
        archive >> m_read;
    }

    void Drop() override { Free(Reached(m_read, ToNode)); }

    std::string List() override { return Listing(m_read, ToNode); }

private:
    std::vector<Node*> m_built;
    std::optional<LeanOutput> m_sink;
    Node* m_read = nullptr;
};

const auto entered = EnterGraphStore<Store>("boost-raw");

} // namespace
} // namespace kel::bench::boost_raw
