#include "bench/graph/Graph.h"

#include <cstring>

namespace {

// What no library can do without: a walk that appends every node's fields, and a loop that makes the nodes again.
struct Node {
    Node* left = nullptr;
    Node* right = nullptr;
    int number = 0;
    mutable std::uint32_t mark = 0;
    std::string text;
};

template <class Value>
void Append(std::string& sink, Value value) {
    sink.append(reinterpret_cast<const char*>(&value), sizeof value);
}

template <class Value>
Value Take(const char*& cursor) {
    Value value;
    std::memcpy(&value, cursor, sizeof value);
    cursor += sizeof value;
    return value;
}

class Walk : public kel::bench::GraphStore {
public:
    ~Walk() override { Free(m_built); }

    void Build(const std::vector<kel::bench::NodePlan>& plan) override {
        m_built = kel::bench::BuildNodes<Node*>(plan, [](int number, const std::string& text) {
            return new Node{nullptr, nullptr, number, 0, text};
        });
    }

    void Write() override {
        m_block = std::string();
        const std::vector<Node*> reached = Number(m_built.front());
        Append(m_block, static_cast<std::uint32_t>(reached.size()));
        for (Node* node : reached)
            WriteNode(*node);
        for (Node* node : reached)
            node->mark = 0;
    }

    void Read() override {
        const char* cursor = m_block.data();
        m_read.resize(Take<std::uint32_t>(cursor));
        for (Node*& node : m_read)
            node = new Node;
        for (Node* node : m_read)
            ReadNode(*node, cursor);
    }

    void Drop() override {
        Free(m_read);
        m_read.clear();
    }

    std::string List() override {
        return kel::bench::Listing(m_read.front(), [](Node* node) -> Node& { return *node; });
    }

private:
    static void Free(const std::vector<Node*>& nodes) {
        for (const Node* node : nodes)
            delete node;
    }

    // Breadth first, which is also the order in which the nodes lie in memory.
    static std::vector<Node*> Number(Node* root) {
        std::vector<Node*> reached{root};
        root->mark = 1;
        for (std::size_t i = 0; i < reached.size(); ++i) {
            const Node& node = *reached[i];
            for (Node* next : {node.left, node.right}) {
                if (next->mark != 0)
                    continue;
                reached.push_back(next);
                next->mark = static_cast<std::uint32_t>(reached.size());
            }
        }
        return reached;
    }

    void WriteNode(const Node& node) {
        Append(m_block, node.left->mark - 1);
        Append(m_block, node.right->mark - 1);
        Append(m_block, node.number);
        Append(m_block, static_cast<std::uint32_t>(node.text.size()));
        m_block += node.text;
    }

    void ReadNode(Node& node, const char*& cursor) {
        node.left = m_read[Take<std::uint32_t>(cursor)];
        node.right = m_read[Take<std::uint32_t>(cursor)];
        node.number = Take<int>(cursor);
        const auto length = Take<std::uint32_t>(cursor);
        node.text.assign(cursor, length);
        cursor += length;
    }

    std::vector<Node*> m_built;
    std::vector<Node*> m_read;
    std::string m_block;
};

const auto entered = kel::bench::EnterGraphStore<Walk>("limit-hand-written walk");

} // namespace
