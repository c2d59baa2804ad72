#include "bench/graph/Graph.h"
#include "bench/support/LeanStreambuf.h"

#include <cereal/archives/binary.hpp>
#include <cereal/types/memory.hpp>
#include <cereal/types/string.hpp>

#include <istream>
#include <optional>
#include <ostream>

namespace kel::bench::cereal_shared {

struct Node {
    std::shared_ptr<Node> left;
    std::shared_ptr<Node> right;
    int number = 0;
    std::uint32_t mark = 0;
    std::string text;

    template <class Archive>
    void serialize(Archive& archive) {
        archive(left, right, number, text);
    }
};

namespace {

using Link = std::shared_ptr<Node>;

Node& ToNode(const Link& link) {
    return *link;
}

Link Create(int number, const std::string& text) {
    const Link node = std::make_shared<Node>();
    node->number = number;
    node->text = text;
    return node;
}

// The nodes hold one another; without this none of them would go.
void Unlink(const std::vector<Link>& nodes) {
    for (const Link& node : nodes) {
        node->left.reset();
        node->right.reset();
    }
}

class Store : public GraphStore {
public:
    ~Store() override { Unlink(m_built); }

    void Build(const std::vector<NodePlan>& plan) override { m_built = BuildNodes<Link>(plan, Create); }

    void Write() override {
        m_sink.emplace();
        std::ostream stream(&*m_sink);
        cereal::BinaryOutputArchive archive(stream);
        archive(m_built.front());
    }

    void Read() override {
        LeanInput source(m_sink->Content());
        std::istream stream(&source);
        cereal::BinaryInputArchive archive(stream);
        archive(m_read);
    }

    void Drop() override {
        Unlink(Reached(m_read, ToNode));
        m_read.reset();
    }

    std::string List() override { return Listing(m_read, ToNode); }

private:
    std::vector<Link> m_built;
    std::optional<LeanOutput> m_sink;
    Link m_read;
};

const auto entered = EnterGraphStore<Store>("cereal-shared");

} // namespace
} // namespace kel::bench::cereal_shared
