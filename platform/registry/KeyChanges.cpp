#include "platform/registry/KeyChanges.h"

#include "platform/kernel/HostText.h"
#include "platform/registry/HiveSchema.h"
#include "platform/registry/RegistryAsks.h"

#include <kelcore/platform/registry.h>

namespace kel::platform {
namespace {

constexpr char kInsertKey[] = "INSERT INTO keys(parent, folded, name, class, boot, written) "
                              "VALUES(?, ?, ?, ?, nullif(?, ''), ?)";
constexpr char kDeleteKey[] = "DELETE FROM keys WHERE id = ?";
constexpr char kDeleteValues[] = "DELETE FROM vals WHERE key = ?";
constexpr char kTouchKey[] = "UPDATE keys SET written = ? WHERE id = ?";
constexpr char kInsertValue[] = "INSERT INTO vals(key, folded, name, type, written, data) VALUES(?, ?, ?, ?, ?, ?)";
constexpr char kUpdateValue[] = "UPDATE vals SET type = ?, written = ?, data = ? WHERE id = ?";
constexpr char kDeleteValue[] = "DELETE FROM vals WHERE id = ?";

void Touch(Hive& hive, std::int64_t key) {
    Query(hive[kTouchKey], RegistryTime(), key).Run();
}

} // namespace

void CreateKeyChange::Look(Session& session) {
    m_parent = m_below;
    session.Key(m_parent);
    for (m_missing = 0; m_missing < path.size(); ++m_missing) {
        const std::int64_t child = session.Child(m_parent, path[m_missing].folded);
        if (child == 0)
            break;
        m_parent = child;
    }
    id = m_parent;
    isNew = m_missing < path.size();
    if (isNew && session.Key(m_parent).isVolatile && !isVolatile)
        throw RegistryFailure{ERROR_CHILD_MUST_BE_VOLATILE};
}

void CreateKeyChange::Make(Hive& hive) {
    if (!isNew)
        return;
    const std::string_view boot = isVolatile ? BootIdentifier() : std::string_view();
    for (std::size_t i = m_missing; i < path.size(); ++i) {
        const bool isLast = i + 1 == path.size();
        Query(hive[kInsertKey], id, std::string_view(path[i].folded), std::string_view(path[i].text),
              isLast ? std::string_view(className) : std::string_view(), boot, RegistryTime())
            .Run();
        id = hive.LastRow();
        if (i == m_missing)
            m_child = id;
    }
    Touch(hive, m_parent);
}

void CreateKeyChange::Record(RegistryCache& cache) const {
    KeyNode* const parent = isNew ? cache.Find(m_parent) : nullptr;
    if (parent != nullptr) {
        parent->ForgetSubkeys();
        parent->PutChild(path[m_missing].folded, m_child);
    }
}

void DeleteKeyChange::Look(Session& session) {
    std::int64_t key = m_below;
    session.Key(key);
    for (const Name& name : path) {
        key = session.Child(key, name.folded);
        if (key == 0)
            throw RegistryFailure{ERROR_FILE_NOT_FOUND};
    }
    session.LoadSubkeys(key);
    KeyNode& node = session.Key(key);
    if (key <= kLastBuiltIn || !node.Subkeys()->empty())
        throw RegistryFailure{ERROR_ACCESS_DENIED};
    m_id = key;
    m_parent = node.parent;
}

void DeleteKeyChange::Make(Hive& hive) const {
    Query(hive[kDeleteValues], m_id).Run();
    Query(hive[kDeleteKey], m_id).Run();
    Touch(hive, m_parent);
}

void DeleteKeyChange::Record(RegistryCache& cache) const {
    cache.Put(m_id) = KeyNode();
    if (KeyNode* const parent = cache.Find(m_parent))
        parent->ForgetSubkeys();
}

void SetValueChange::Look(Session& session) {
    m_row = session.ValueOf(key, name.folded).id;
    m_isNew = m_row == 0;
}

void SetValueChange::Make(Hive& hive) {
    m_stored = data;
    if (IsTextType(type) && !IsAscii(data)) {
        m_room = HiveText(data);
        m_stored = m_room;
    }
    if (!m_isNew) {
        Query(hive[kUpdateValue], std::int64_t{type}, RegistryTime(), Blob{m_stored}, m_row).Run();
        return;
    }
    Query(hive[kInsertValue], key, std::string_view(name.folded), std::string_view(name.text), std::int64_t{type},
          RegistryTime(), Blob{m_stored})
        .Run();
    m_row = hive.LastRow();
}

// What was stored, as the narrow calls give it out; large data is left to be fetched.
void SetValueChange::Remember(Value& value) const {
    value.type = type;
    value.data = NarrowData(type, m_stored);
    value.size = static_cast<DWORD>(value.data.size());
    value.hasData = true;
    ReleaseLarge(value);
}

void SetValueChange::Record(RegistryCache& cache) const {
    KeyNode* const node = cache.Find(key);
    if (node == nullptr)
        return;
    node->lastWrite.reset();
    cache.Count(m_stored.size());
    if (!m_isNew) {
        if (Value* const known = node->Find(name.folded))
            Remember(*known);
        return;
    }
    Value value;
    value.id = m_row;
    value.folded = name.folded;
    value.name = AnsiFromUtf8(name.text);
    Remember(value);
    cache.Count(sizeof value + name.text.size() * 2);
    node->Put(std::move(value));
}

DefaultValueChange::DefaultValueChange(std::int64_t below, std::vector<Name> path, std::string_view text)
    : m_create(below, std::move(path)), m_set{} {
    m_set.type = REG_SZ;
    m_set.data = text;
}

void DefaultValueChange::Look(Session& session) {
    m_create.Look(session);
    if (!m_create.isNew) {
        m_set.key = m_create.id;
        m_set.Look(session);
    }
}

void DefaultValueChange::Make(Hive& hive) {
    m_create.Make(hive);
    m_set.key = m_create.id;
    m_set.Make(hive);
}

void DefaultValueChange::Record(RegistryCache& cache) const {
    m_create.Record(cache);
    m_set.Record(cache);
}

void DeleteValueChange::Look(Session& session) {
    m_row = session.ValueOf(key, folded).id;
    if (m_row == 0)
        throw RegistryFailure{ERROR_FILE_NOT_FOUND};
}

void DeleteValueChange::Make(Hive& hive) const {
    Query(hive[kDeleteValue], m_row).Run();
    Touch(hive, key);
}

void DeleteValueChange::Record(RegistryCache& cache) const {
    if (KeyNode* const node = cache.Find(key)) {
        node->Remove(folded);
        node->lastWrite.reset();
    }
}

} // namespace kel::platform
