#include "bench/graph/Graph.h"
#include "bench/support/LeanStreambuf.h"

#include <cereal/archives/binary.hpp>
#include <cereal/types/memory.hpp>
#include <cereal/types/polymorphic.hpp>
#include <cereal/types/string.hpp>

#include <istream>
#include <optional>
#include <ostream>

namespace kel::bench::cereal_polymorphic {

struct Base {
    virtual ~Base() = default;

    template <class Archive>
    void serialize(Archive&) {}
};

struct Node : Base {
    std::shared_ptr<Base> left;
    std::shared_ptr<Base> right;
    int number = 0;
    std::uint32_t mark = 0;
    std::string text;

    template <class Archive>
    void serialize(Archive& archive) {
        archive(cereal::base_class<Base>(this), left, right, number, text);
    }
};

namespace {

using Link = std::shared_ptr<Base>;

Node& ToNode(const Link& link) {
    return static_cast<Node&>(*link);
}

std::shared_ptr<Node> Create(int number, const std::string& text) {
    const auto node = std::make_shared<Node>();
    node->number = number;
    node->text = text;
    return node;
}

// The nodes hold one another; without this none of them would go.
template <class Pointer>
void Unlink(const std::vector<Pointer>& nodes) {
    for (const Pointer& node : nodes) {
        ToNode(node).left.reset();
        ToNode(node).right.reset();
    }
}

class Store : public GraphStore {
public:
    ~Store() override { Unlink(m_built); }

    void Build(const std::vector<NodePlan>& plan) override {
        m_built = BuildNodes<std::shared_ptr<Node>>(plan, Create);
    }

    void Write() override {
        m_sink.emplace();
        std::ostream stream(&*m_sink);
        cereal::BinaryOutputArchive archive(stream);
        const Link root = m_built.front();
        archive(root);
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
    std::vector<std::shared_ptr<Node>> m_built;
    std::optional<LeanOutput> m_sink;
    Link m_read;
};

const auto entered = EnterGraphStore<Store>("cereal-polymorphic");

} // namespace
} // namespace kel::bench::cereal_polymorphic

CEREAL_REGISTER_TYPE(kel::bench::cereal_polymorphic::Node)
