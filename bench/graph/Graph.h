#pragma once

/// @file
/// The graph that all store: 200,000 nodes with two links, an int and a short text. It is a binary tree whose leaves
/// link back to two of their ancestors, so that it is shallow and yet full of cycles and shared nodes.

#include "bench/support/Jobs.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace kel::bench {

constexpr std::size_t kNodes = 200'000;

/// A node as all build theirs; the links are indices.
struct NodePlan {
    std::size_t left;
    std::size_t right;
    int number;
    std::string text;
};

/// The shallow graph; its first node is the root.
const std::vector<NodePlan>& ShallowPlan();

/// One way of storing graphs, with nodes of its own.
class GraphStore {
public:
    virtual ~GraphStore() = default;
    /// Makes the nodes of @p plan.
    virtual void Build(const std::vector<NodePlan>& plan) = 0;
    /// Stores the graph that was built in memory that starts empty; what was stored before is dropped.
    virtual void Write() = 0;
    /// Makes the stored graph anew.
    virtual void Read() = 0;
    /// Frees the graph that Read made.
    virtual void Drop() = 0;
    /// Visits the graph that Read made. @return its nodes in order of visit, see Listing.
    virtual std::string List() = 0;
};

struct GraphPeer {
    const char* who;
    std::unique_ptr<GraphStore> (*make)();
};

template <class Store>
Enter<GraphPeer> EnterGraphStore(const char* who) {
    return Enter<GraphPeer>({who, []() -> std::unique_ptr<GraphStore> { return std::make_unique<Store>(); }});
}

/// Makes nodes and links them as planned. @p create makes a node of a number and a text.
/// @return the nodes in the order of the plan.
template <class Pointer, class Create>
std::vector<Pointer> BuildNodes(const std::vector<NodePlan>& plan, Create create) {
    std::vector<Pointer> nodes;
    nodes.reserve(plan.size());
    for (const NodePlan& planned : plan)
        nodes.push_back(create(planned.number, planned.text));
    for (std::size_t i = 0; i < plan.size(); ++i) {
        nodes[i]->left = nodes[plan[i].left];
        nodes[i]->right = nodes[plan[i].right];
    }
    return nodes;
}

/// Visits every node that can be reached from @p root once, links first left then right. A node's `mark`, 0 in all of
/// them before, is the number of its visit afterwards.
/// @param node brings a link of the store to a node.
/// @return the links in order of visit.
template <class Pointer, class ToNode>
std::vector<Pointer> Reached(const Pointer& root, ToNode node) {
    std::vector<Pointer> reached;
    std::vector<Pointer> pending{root};
    while (!pending.empty()) {
        const Pointer next = pending.back();
        pending.pop_back();
        auto& current = node(next);
        if (current.mark != 0)
            continue;
        reached.push_back(next);
        current.mark = static_cast<std::uint32_t>(reached.size());
        pending.push_back(current.right);
        pending.push_back(current.left);
    }
    return reached;
}

/// @return the nodes, one a line: number, text, and the visits of the two linked nodes. Clears the marks.
template <class Pointer, class ToNode>
std::string Listing(const Pointer& root, ToNode node) {
    const std::vector<Pointer> reached = Reached(root, node);
    std::string text;
    for (const Pointer& link : reached) {
        const auto& current = node(link);
        text += std::to_string(current.number) + ' ' + current.text + ' ' + std::to_string(node(current.left).mark) +
                ' ' + std::to_string(node(current.right).mark) + '\n';
    }
    for (const Pointer& link : reached)
        node(link).mark = 0;
    return text;
}

} // namespace kel::bench
