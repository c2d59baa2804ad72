#include "platform/kernel/HostText.h"
#include "platform/registry/Registry.h"
#include "platform/registry/RegistryText.h"

#include <kelcore/platform/codepages.h>

namespace kel::platform {
namespace {

constexpr char kKey[] = "SELECT parent, class, boot IS NOT NULL FROM keys WHERE id = ?";
constexpr char kChild[] = "SELECT id FROM keys WHERE parent = ? AND folded = ?";
constexpr char kSubkeys[] = "SELECT id, folded, name, class FROM keys WHERE parent = ? ORDER BY folded";
constexpr char kLastWrite[] = "SELECT max(written, coalesce((SELECT max(written) FROM vals WHERE key = keys.id), 0)) "
                              "FROM keys WHERE id = ?";
constexpr char kData[] = "SELECT data FROM vals WHERE id = ?";
// Large data is fetched with the rest only where its size is not that of the text it becomes.
constexpr char kValue[] = "SELECT id, folded, name, type, length(data), CASE WHEN length(data) <= ?3 THEN data END "
                          "FROM vals WHERE key = ?1 AND folded = ?2";
constexpr char kValues[] = "SELECT id, folded, name, type, length(data), CASE WHEN length(data) <= ?2 THEN data END "
                           "FROM vals WHERE key = ?1 ORDER BY id";

Value ReadValue(Hive& hive, const Query& row) {
    Value value;
    value.id = row.Integer(0);
    value.folded = row.Bytes(1);
    value.name = AnsiFromUtf8(row.Bytes(2));
    value.type = static_cast<DWORD>(row.Integer(3));
    value.size = static_cast<DWORD>(row.Integer(4));
    value.hasData = !row.IsNull(5);
    if (value.hasData) {
        value.data = NarrowData(value.type, row.Bytes(5));
        value.size = static_cast<DWORD>(value.data.size());
    } else if (IsTextType(value.type) && GetACP() != CP_UTF8) {
        Query large(hive[kData], value.id);
        if (large.Next())
            value.size = static_cast<DWORD>(AnsiFromUtf8(large.Bytes(0)).size());
    }
    return value;
}

std::size_t WeightOf(const Value& value) {
    return sizeof(Value) + value.data.size() + value.name.size() + value.folded.size();
}

} // namespace

KeyNode& Session::Key(std::int64_t key) {
    KeyNode* node = m_cache.Find(key);
    if (node == nullptr) {
        Query row(m_hive[kKey], key);
        node = &m_cache.Put(key);
        m_cache.Count(sizeof *node);
        node->exists = row.Next();
        if (node->exists) {
            node->parent = row.Integer(0);
            node->className = AnsiFromUtf8(row.Bytes(1));
            node->isVolatile = row.Integer(2) != 0;
        }
    }
    if (!node->exists)
        throw RegistryFailure{ERROR_KEY_DELETED};
    return *node;
}

std::int64_t Session::Child(std::int64_t key, std::string_view folded) {
    KeyNode& node = Key(key);
    if (const std::optional<std::int64_t> known = node.Child(folded))
        return *known;
    Query row(m_hive[kChild], key, folded);
    const std::int64_t child = row.Next() ? row.Integer(0) : 0;
    node.PutChild(folded, child);
    m_cache.Count(folded.size() + sizeof(std::string));
    return child;
}

Value& Session::ValueOf(std::int64_t key, std::string_view folded) {
    KeyNode& node = Key(key);
    if (Value* const known = node.Find(folded))
        return *known;
    Query row(m_hive[kValue], key, folded, static_cast<std::int64_t>(RegistryCache::kLargeData));
    Value value = row.Next() ? ReadValue(m_hive, row) : Value();
    value.folded = folded; // what was asked for, should a damaged index answer with another name
    m_cache.Count(WeightOf(value));
    return *node.Put(std::move(value));
}

void Session::LoadData(Value& value) {
    if (value.hasData)
        return;
    Query row(m_hive[kData], value.id);
    if (!row.Next())
        throw SqliteFailure{SQLITE_CORRUPT};
    value.data = NarrowData(value.type, row.Bytes(0));
    value.size = static_cast<DWORD>(value.data.size());
    value.hasData = true;
}

void Session::LoadValues(std::int64_t key) {
    KeyNode& node = Key(key);
    if (node.KnowsAllValues())
        return;
    std::vector<std::unique_ptr<Value>> values;
    Query rows(m_hive[kValues], key, static_cast<std::int64_t>(RegistryCache::kLargeData));
    while (rows.Next()) {
        values.push_back(std::make_unique<Value>(ReadValue(m_hive, rows)));
        m_cache.Count(WeightOf(*values.back()));
    }
    node.PutAll(std::move(values));
}

void Session::LoadSubkeys(std::int64_t key) {
    KeyNode& node = Key(key);
    if (node.Subkeys())
        return;
    std::vector<Subkey> subkeys;
    Query rows(m_hive[kSubkeys], key);
    while (rows.Next()) {
        subkeys.push_back(
            {rows.Integer(0), std::string(rows.Bytes(1)), AnsiFromUtf8(rows.Bytes(2)), AnsiFromUtf8(rows.Bytes(3))});
        m_cache.Count(sizeof(Subkey) + subkeys.back().name.size() * 2);
    }
    node.PutAllSubkeys(std::move(subkeys));
}

void Session::LoadLastWrite(std::int64_t key) {
    KeyNode& node = Key(key);
    if (node.lastWrite)
        return;
    Query row(m_hive[kLastWrite], key);
    node.lastWrite = row.Next() ? row.Integer(0) : 0;
}

} // namespace kel::platform
