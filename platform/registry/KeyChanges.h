#pragma once

/// @file
/// Changes of the hive, see Registry::Commit.

#include "platform/registry/Registry.h"
#include "platform/registry/RegistryText.h"

namespace kel::platform {

/// Makes the keys of a path that are missing.
struct CreateKeyChange {
    CreateKeyChange(std::int64_t below, std::vector<Name> names) : path(std::move(names)), m_below(below) {}

    void Look(Session& session);
    void Make(Hive& hive);
    void Record(RegistryCache& cache) const;

    std::vector<Name> path;
    std::string className; ///< of the last key, if it is made
    bool isVolatile = false;

    std::int64_t id = 0; ///< result: the last key
    bool isNew = false;

private:
    std::int64_t m_below;
    std::int64_t m_parent = 0; // the last key of the path that is there
    std::size_t m_missing = 0;
    std::int64_t m_child = 0; // the first one that was made
};

/// Deletes the key at the end of a path, which must have no subkeys, and its values.
struct DeleteKeyChange {
    DeleteKeyChange(std::int64_t below, std::vector<Name> names) : path(std::move(names)), m_below(below) {}

    void Look(Session& session);
    void Make(Hive& hive) const;
    void Record(RegistryCache& cache) const;

    std::vector<Name> path;

private:
    std::int64_t m_below;
    std::int64_t m_id = 0;
    std::int64_t m_parent = 0;
};

/// Sets a value, making it if it is missing.
struct SetValueChange {
    std::int64_t key;
    Name name;
    DWORD type;
    std::string_view data; ///< in the code page

    void Look(Session& session);
    void Make(Hive& hive);
    void Record(RegistryCache& cache) const;

private:
    void Remember(Value& value) const;

    std::string m_room;
    std::string_view m_stored; // data in the form that the hive holds
    std::int64_t m_row = 0;
    bool m_isNew = true;
};

/// Sets the nameless value of a key, which is made if it is missing, to a text.
struct DefaultValueChange {
    DefaultValueChange(std::int64_t below, std::vector<Name> path, std::string_view text);

    void Look(Session& session);
    void Make(Hive& hive);
    void Record(RegistryCache& cache) const;

private:
    CreateKeyChange m_create;
    SetValueChange m_set;
};

struct DeleteValueChange {
    std::int64_t key;
    std::string_view folded;

    void Look(Session& session);
    void Make(Hive& hive) const;
    void Record(RegistryCache& cache) const;

private:
    std::int64_t m_row = 0;
};

} // namespace kel::platform
