#include <kelcore/registry.h>

#include <kelcore/text.h>

#include <memory>
#include <type_traits>
#include <utility>

/// The record that the copies of a RegistryKey share. Its layout is what clients see through the pointer.
struct RegistryKey::SharedKey {
    HKEY key;
    __int32 count;
};

namespace {

// Members close keys in the caller's back, where a changed last error would come as a surprise.
void CloseQuietly(HKEY key) {
    if (key == nullptr)
        return;
    const DWORD error = GetLastError();
    RegCloseKey(key);
    SetLastError(error);
}

struct KeyCloser {
    void operator()(HKEY key) const { CloseQuietly(key); }
};

/// Keeps a key from leaking until there is a record for it.
using OwnedKey = std::unique_ptr<std::remove_pointer_t<HKEY>, KeyCloser>;

} // namespace

RegistryKey::RegistryKey() : RegistryKey(nullptr) {}

RegistryKey::RegistryKey(HKEY key) {
    OwnedKey owned(key);
    m_pShared = new SharedKey{key, 1};
    static_cast<void>(owned.release()); // the record's from here on
}

RegistryKey::RegistryKey(const RegistryKey& other) : m_pShared(other.m_pShared) {
    ++m_pShared->count;
}

const RegistryKey& RegistryKey::operator=(const RegistryKey& other) {
    ++other.m_pShared->count;
    Release(std::exchange(m_pShared, other.m_pShared));
    return *this;
}

RegistryKey::~RegistryKey() {
    Release(m_pShared);
}

HKEY RegistryKey::Handle() const {
    return m_pShared->key;
}

void RegistryKey::Release(SharedKey* shared) {
    static_assert(sizeof(void*) != 4 || sizeof(SharedKey) == 8, "handle, count");
    if (--shared->count != 0)
        return;
    CloseQuietly(shared->key);
    delete shared;
}

bool RegistryKey::IsValid() const {
    return Handle() != nullptr;
}

void RegistryKey::Close() {
    *this = RegistryKey();
}

bool RegistryKey::operator==(const RegistryKey& other) const {
    return m_pShared == other.m_pShared;
}

long RegistryKey::ConnectRegistry(const WideString& machine, HKEY root) {
    HKEY connected = nullptr;
    const long error = RegConnectRegistryA(StdW2A(machine).c_str(), root, &connected);
    if (error == ERROR_SUCCESS)
        *this = RegistryKey(connected);
    return error;
}

RegistryKey RegistryKey::CreateSubkey(const WideString& name, unsigned long options, unsigned long access,
                                      unsigned long* disposition) {
    HKEY created = nullptr;
    DWORD found = 0;
    const long error = RegCreateKeyExA(Handle(), StdW2A(name).c_str(), /*reserved*/ 0, /*class*/ nullptr,
                                       static_cast<DWORD>(options), static_cast<REGSAM>(access), /*security*/ nullptr,
                                       &created, disposition == nullptr ? nullptr : &found);
    if (error != ERROR_SUCCESS)
        return {};
    if (disposition != nullptr)
        *disposition = found;
    return {created};
}

RegistryKey RegistryKey::OpenSubkey(const WideString& name, unsigned long access) {
    HKEY opened = nullptr;
    const long error =
        RegOpenKeyExA(Handle(), StdW2A(name).c_str(), /*options*/ 0, static_cast<REGSAM>(access), &opened);
    if (error != ERROR_SUCCESS)
        return {};
    return {opened};
}

long RegistryKey::DeleteSubkey(const WideString& name) {
    return RegDeleteKeyA(Handle(), StdW2A(name).c_str());
}

long RegistryKey::SetSubkey(const WideString& subkey, const WideString& value) {
    const NarrowString text = StdW2A(value);
    return RegSetValueA(Handle(), StdW2A(subkey).c_str(), REG_SZ, text.c_str(), static_cast<DWORD>(text.size() + 1));
}

long RegistryKey::Flush() {
    return RegFlushKey(Handle());
}

long RegistryKey::DeleteValue(const WideString& name) {
    return RegDeleteValueA(Handle(), StdW2A(name).c_str());
}
