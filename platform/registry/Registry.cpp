#include "platform/registry/Registry.h"

#include "platform/registry/HiveSchema.h"

#include <kelcore/platform/testing.h>

#include <atomic>
#include <pthread.h>

namespace kel::platform {
namespace {

// Set once there is a registry.
std::atomic<Registry*> g_registry{nullptr};

// Runs behind the destructors of everything that uses this library.
[[gnu::destructor]] void LeaveTidy() {
    if (Registry* const registry = g_registry.load(std::memory_order_acquire))
        registry->CloseAtExit();
}

} // namespace

// Never destroyed: destructors of static objects may still use the registry.
Registry& Registry::Get() {
    static Registry& registry = *new Registry;
    return registry;
}

Registry::Registry() {
    g_registry.store(this, std::memory_order_release);
    pthread_atfork([] { Get().BeforeFork(); }, [] { Get().AfterForkInParent(); }, [] { Get().AfterForkInChild(); });
}

Hive& Registry::Opened() {
    if (m_hive == nullptr) {
        if (m_path.empty())
            m_path = DefaultHivePath();
        Open(m_path);
    }
    return *m_hive;
}

void Registry::Open(const std::string& path) {
    if (m_refusal != ERROR_SUCCESS && SignatureOf(path) == m_refused)
        throw RegistryFailure{m_refusal};
    m_refusal = ERROR_SUCCESS;
    try {
        m_hive = std::make_unique<Hive>(path, !m_checked);
    } catch (const RegistryFailure& failure) {
        if (failure.code == ERROR_REGISTRY_CORRUPT)
            Refuse(failure.code);
        throw;
    } catch (const SqliteFailure& failure) {
        if (failure.IsDamage())
            Refuse(failure.Result());
        throw;
    }
    m_checked = true;
    const std::unique_lock memory(m_memoryLocks.front());
    m_cache.Attach(&m_hive->Index());
}

void Registry::Close() {
    const std::unique_lock memory(m_memoryLocks.front());
    m_cache.Attach(nullptr);
    m_hive.reset();
}

void Registry::Refuse(LONG code) {
    m_refusal = code;
    m_refused = SignatureOf(m_path);
    m_checked = false;
    throw RegistryFailure{code};
}

// A hive that turns out to be damaged is left alone from then on.
LONG Registry::AfterFailure(const SqliteFailure& failure) noexcept {
    if (!failure.IsDamage())
        return failure.Result();
    const std::lock_guard connection(m_connectionLock);
    if (m_hive != nullptr && !m_hive->IsInMemory()) {
        m_hive->KeepFilesOnClose(true);
        Close();
        m_refusal = failure.Result();
        m_refused = SignatureOf(m_path);
        m_checked = false;
    }
    return failure.Result();
}

LONG Registry::Flush() noexcept {
    return Guarded([this] {
        const std::lock_guard connection(m_connectionLock);
        Opened().Flush();
        return ERROR_SUCCESS;
    });
}

void Registry::Use(const std::string& path) {
    const std::lock_guard connection(m_connectionLock);
    Close();
    m_path = path;
    m_checked = false;
    m_refusal = ERROR_SUCCESS;
}

// The locks that SQLite holds on files do not pass to a child, though its memory says that it has them. A hive in
// memory has no locks: the child goes on with a copy.
void Registry::BeforeFork() {
    m_connectionLock.lock();
    if (m_hive != nullptr && !m_hive->IsInMemory()) {
        m_hive->KeepFilesOnClose(true);
        Close();
    }
}

void Registry::AfterForkInParent() {
    m_connectionLock.unlock();
}

// What is remembered is whole, as it changes under the connection's lock alone; but a thread that the child does not
// have may have been reading it, and would hold its lock for ever.
void Registry::AfterForkInChild() {
    m_memoryLocks.emplace_front();
    m_connectionLock.unlock();
}

void Registry::CloseAtExit() {
    const std::unique_lock connection(m_connectionLock, std::try_to_lock);
    if (connection && m_hive != nullptr)
        Close();
}

void UseHive(const char* path) {
    Registry::Get().Use(path);
}

} // namespace kel::platform
