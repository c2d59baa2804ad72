#include "platform/registry/KeyHandles.h"

#include "platform/registry/HiveSchema.h"

#include <kelcore/platform/files.h>

namespace kel::platform {
namespace {

struct Predefined {
    HKEY key;
    BuiltInKey id;
};

const Predefined kPredefined[] = {
    {HKEY_CURRENT_USER, kCurrentUser},     {HKEY_LOCAL_MACHINE, kLocalMachine},
    {HKEY_CLASSES_ROOT, kClasses},         {HKEY_USERS, kUsers},
    {HKEY_CURRENT_CONFIG, kCurrentConfig},
};

struct Generic {
    DWORD generic;
    DWORD specific;
};

constexpr Generic kGenerics[] = {
    {GENERIC_READ, KEY_READ},      {GENERIC_WRITE, KEY_WRITE},        {GENERIC_EXECUTE, KEY_EXECUTE},
    {GENERIC_ALL, KEY_ALL_ACCESS}, {MAXIMUM_ALLOWED, KEY_ALL_ACCESS},
};

} // namespace

DWORD OpenKey::SpecificRights(DWORD access) const {
    for (const Generic& right : kGenerics)
        if (access & right.generic)
            access = (access & ~right.generic) | right.specific;
    return access & KEY_ALL_ACCESS;
}

// The constants are 32 bits wide, extended by their sign; programs that extend them with zeros are understood, too.
std::int64_t PredefinedKey(HKEY key) {
    const auto value = reinterpret_cast<ULONG_PTR>(key);
    const auto extended = static_cast<ULONG_PTR>(static_cast<LONG>(value));
    if (value >> 31 == 0 || (value != extended && value >> 32 != 0))
        return 0;
    for (const Predefined& predefined : kPredefined)
        if (reinterpret_cast<ULONG_PTR>(predefined.key) == extended)
            return predefined.id;
    return 0;
}

UsedKey::UsedKey(HKEY key) : m_id(PredefinedKey(key)) {
    if (m_id != 0)
        return;
    m_pin.emplace(static_cast<HANDLE>(key));
    if (*m_pin) {
        m_id = (*m_pin)->Id();
        m_depth = (*m_pin)->Depth();
    }
}

LONG UsedKey::Check(DWORD rights) const {
    if (!IsOpen())
        return ERROR_INVALID_HANDLE;
    return IsPredefined() || (m_pin->Access() & rights) == rights ? ERROR_SUCCESS : ERROR_ACCESS_DENIED;
}

HKEY OpenKeyHandle(std::int64_t id, std::size_t depth, REGSAM access) {
    auto key = std::make_shared<OpenKey>(id, depth);
    const DWORD rights = key->SpecificRights(access);
    const HANDLE handle = OpenHandle(std::move(key), rights);
    if (handle == nullptr)
        throw std::bad_alloc();
    return static_cast<HKEY>(handle);
}

} // namespace kel::platform
