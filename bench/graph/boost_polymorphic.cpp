#include "bench/graph/Graph.h"
#include "bench/support/LeanStreambuf.h"

#include <boost/archive/binary_iarchive.hpp>
#include <boost/archive/binary_oarchive.hpp>
#include <boost/serialization/base_object.hpp>
#include <boost/serialization/export.hpp>
#include <boost/serialization/string.hpp>

#include <optional>

namespace kel::bench::boost_polymorphic {

struct Base {
    virtual ~Base() = default;

    template <class Archive>
    void serialize(Archive&, unsigned) {}
};

struct Node : Base {
    Base* left = nullptr;
    Base* right = nullptr;
    int number = 0;
    std::uint32_t mark = 0;
    std::string text;

    template <class Archive>
    void serialize(Archive& archive, unsigned) {
        archive& boost::serialization::base_object<Base>(*this);
        archive& left& right& number& text;
    }
};

namespace {

Node& ToNode(Base* node) {
    return static_cast<Node&>(*node);
}

template <class Pointer>
void Free(const std::vector<Pointer>& nodes) {
    for (const Base* node : nodes)
        delete node;
}

Node* Create(int number, const std::string& text) {
    Node* const node = new Node;
    node->number = number;
    node->text = text;
    return node;
}

class Store : public GraphStore {
public:
    ~Store() override { Free(m_built); }

    void Build(const std::vector<NodePlan>& plan) override { m_built = BuildNodes<Node*>(plan, Create); }

    void Write() override {
        m_sink.emplace();
        boost::archive::binary_oarchive archive(*m_sink, boost::archive::no_header);
        const Base* const root = m_built.front();
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
    Base* m_read = nullptr;
};

const auto entered = EnterGraphStore<Store>("boost-polymorphic");

} // namespace
} // namespace kel::bench::boost_polymorphic

BOOST_CLASS_EXPORT(kel::bench::boost_polymorphic::Node)
