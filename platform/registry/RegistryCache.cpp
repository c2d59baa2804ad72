#include "platform/registry/RegistryCache.h"

#include <algorithm>

namespace kel::platform {
namespace {

constexpr std::size_t kMostMemory = 64 << 20;

Value g_none;

} // namespace

Value* KeyNode::Find(std::string_view folded) {
    const auto found = m_values.find(folded);
    if (found != m_values.end())
        return found->second.get();
    return m_knowsAllValues ? &g_none : nullptr;
}

Value* KeyNode::Put(Value value) {
    Remove(value.folded);
    auto owned = std::make_unique<Value>(std::move(value));
    Value* const put = owned.get();
    m_values.emplace(put->folded, std::move(owned));
    if (m_knowsAllValues && put->id != 0)
        m_order.push_back(put);
    return put;
}

void KeyNode::Remove(std::string_view folded) {
    const auto found = m_values.find(folded);
    if (found == m_values.end())
        return;
    const auto at = std::find(m_order.begin(), m_order.end(), found->second.get());
    if (at != m_order.end())
        m_order.erase(at);
    m_values.erase(found);
}

void KeyNode::PutAll(std::vector<std::unique_ptr<Value>> values) {
    m_values.clear();
    m_order.clear();
    m_order.reserve(values.size());
    for (auto& value : values) {
        Value* const put = value.get();
        if (m_values.emplace(put->folded, std::move(value)).second)
            m_order.push_back(put);
    }
    m_knowsAllValues = true;
}

std::optional<std::int64_t> KeyNode::Child(std::string_view folded) const {
    const auto found = m_children.find(folded);
    if (found != m_children.end())
        return found->second;
    return m_subkeys ? std::optional<std::int64_t>(0) : std::nullopt;
}

void KeyNode::PutAllSubkeys(std::vector<Subkey> subkeys) {
    m_children.clear();
    for (const Subkey& subkey : subkeys)
        m_children.emplace(subkey.folded, subkey.id);
    m_subkeys = std::move(subkeys);
}

void KeyNode::ForgetSubkeys() {
    m_children.clear();
    m_subkeys.reset();
    lastWrite.reset();
}

void RegistryCache::Attach(const WalIndex* index) {
    m_index = index;
    Clear();
    if (index != nullptr)
        m_mark = index->Now();
}

void RegistryCache::Refresh() {
    if (IsCurrent())
        return;
    Clear();
    m_mark = m_index->Now();
}

bool RegistryCache::FollowOwnCommit() {
    const ChangeMark now = m_index->Now();
    const bool onlyOurs = now == m_mark || WalIndex::IsNext(m_mark, now);
    if (!onlyOurs)
        Clear();
    m_mark = now;
    return onlyOurs;
}

void RegistryCache::Trim() {
    if (m_weight > kMostMemory)
        Clear();
}

void RegistryCache::Clear() {
    m_nodes.clear();
    m_weight = 0;
}

KeyNode* RegistryCache::Find(std::int64_t key) {
    const auto found = m_nodes.find(key);
    return found == m_nodes.end() ? nullptr : &found->second;
}

} // namespace kel::platform
