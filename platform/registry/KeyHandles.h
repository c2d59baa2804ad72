#pragma once

#include "platform/kernel/Faults.h"
#include "platform/kernel/Handles.h"
#include "platform/registry/Sqlite.h"

#include <kelcore/platform/errors.h>
#include <kelcore/platform/registry.h>

#include <new>
#include <optional>

namespace kel::platform {

/// An open key. It holds nothing but the key's identifier, which is never used for another key.
class OpenKey final : public Object {
public:
    static constexpr ObjectKind kKind = ObjectKind::Key;

    OpenKey(std::int64_t id, std::size_t depth) : Object(kKind), m_id(id), m_depth(depth) {}

    DWORD SpecificRights(DWORD access) const override;
    std::int64_t Id() const { return m_id; }
    /// Levels between the key and the predefined key that it was reached from.
    std::size_t Depth() const { return m_depth; }

private:
    const std::int64_t m_id;
    const std::size_t m_depth;
};

/// The built-in key that a predefined one stands for, 0 for other handles.
std::int64_t PredefinedKey(HKEY key);

/// The key that a call is about, kept from being closed for its length.
class UsedKey {
public:
    explicit UsedKey(HKEY key);

    bool IsOpen() const { return m_id != 0; }
    bool IsPredefined() const { return IsOpen() && !m_pin; }
    std::int64_t Id() const { return m_id; }
    std::size_t Depth() const { return m_depth; }

    /// The result of a call that needs @p rights: ERROR_SUCCESS, ERROR_INVALID_HANDLE or ERROR_ACCESS_DENIED.
    LONG Check(DWORD rights) const;

private:
    std::optional<Pinned<OpenKey>> m_pin;
    std::int64_t m_id;
    std::size_t m_depth = 0;
};

/// Opens a handle with the rights that @p access asks for. @throws RegistryFailure
HKEY OpenKeyHandle(std::int64_t id, std::size_t depth, REGSAM access);

/// The body of a registry call: every failure becomes its result, that of a call that is made to fail included.
template <class Body>
LONG RegistryCall(const char* name, Body body) noexcept try {
    return CallFails(name) ? static_cast<LONG>(GetLastError()) : static_cast<LONG>(body());
} catch (const RegistryFailure& failure) {
    return failure.code;
} catch (const std::bad_alloc&) {
    return ERROR_NOT_ENOUGH_MEMORY;
}

} // namespace kel::platform
