#pragma once

/// @file
/// What a process remembers of its hive: keys, with those of their subkeys and values that were asked for, in the form
/// that the narrow calls give out.

#include "platform/registry/WalIndex.h"

#include <kelcore/platform/base.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kel::platform {

struct Value {
    std::int64_t id = 0; ///< its row; 0: the key is known to have no such value
    std::string folded;
    std::string name; ///< in the code page
    DWORD type = 0;
    DWORD size = 0;
    bool hasData = false;
    std::string data; ///< text in the code page
};

struct Subkey {
    std::int64_t id;
    std::string folded;
    std::string name;
    std::string className;
};

/// One key. Values and subkeys may be known singly or all of them.
class KeyNode {
public:
    bool exists = false;
    bool isVolatile = false;
    std::int64_t parent = 0;
    std::string className;
    std::optional<std::int64_t> lastWrite; ///< the latest of the key's own time and those of its values

    /// @name Values
    /// @{

    /// The value of a name, one with the row 0 if there is none, or null if that is not known.
    Value* Find(std::string_view folded);
    Value* Put(Value value);
    void Remove(std::string_view folded);
    /// Takes all values, in their order.
    void PutAll(std::vector<std::unique_ptr<Value>> values);
    bool KnowsAllValues() const { return m_knowsAllValues; }
    /// In the order in which they were made.
    const std::vector<Value*>& Values() const { return m_order; }
    /// @}

    /// @name Subkeys
    /// @{

    /// The subkey of a name, 0 if there is none, nothing if that is not known.
    std::optional<std::int64_t> Child(std::string_view folded) const;
    void PutChild(std::string_view folded, std::int64_t id) { m_children[std::string(folded)] = id; }
    /// Takes all subkeys, in their order.
    void PutAllSubkeys(std::vector<Subkey> subkeys);
    void ForgetSubkeys();
    const std::optional<std::vector<Subkey>>& Subkeys() const { return m_subkeys; }
    /// @}

private:
    struct Hash : std::hash<std::string_view> {
        using is_transparent = void;
    };

    std::unordered_map<std::string_view, std::unique_ptr<Value>> m_values; // by folded names, which the values hold
    std::vector<Value*> m_order;
    bool m_knowsAllValues = false;
    std::unordered_map<std::string, std::int64_t, Hash, std::equal_to<>> m_children;
    std::optional<std::vector<Subkey>> m_subkeys;
};

/// All keys that are known, as they are while the hive is at a mark.
class RegistryCache {
public:
    /// Data beyond this size is fetched when it is asked for, and not remembered.
    static constexpr std::size_t kLargeData = 64 * 1024;

    /// The hive to look at; null while none is open. Nothing is known of it yet.
    void Attach(const WalIndex* index);

    /// Whether all that is known still holds.
    bool IsCurrent() const { return m_index != nullptr && m_index->IsAt(m_mark); }
    /// Forgets everything if anybody has changed the hive.
    void Refresh();
    /// Keeps what is known over a commit of this process's own, if it was the only one since Refresh. Everything is
    /// forgotten otherwise. @return whether the change may now be recorded.
    bool FollowOwnCommit();
    /// Forgets everything if it takes too much memory.
    void Trim();
    void Count(std::size_t bytes) { m_weight += bytes; }
    void Clear();

    KeyNode* Find(std::int64_t key);
    KeyNode& Put(std::int64_t key) { return m_nodes[key]; }

private:
    const WalIndex* m_index = nullptr;
    ChangeMark m_mark{};
    std::unordered_map<std::int64_t, KeyNode> m_nodes;
    std::size_t m_weight = 0; // bytes, roughly
};

} // namespace kel::platform
