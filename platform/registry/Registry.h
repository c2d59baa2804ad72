#pragma once

#include "platform/registry/Hive.h"
#include "platform/registry/HiveFile.h"
#include "platform/registry/RegistryCache.h"

#include <kelcore/platform/errors.h>

#include <forward_list>
#include <mutex>
#include <new>
#include <shared_mutex>

namespace kel::platform {

/// A hive under a transaction, together with what is remembered of it. Members load what they are asked for.
class Session {
public:
    Session(Hive& hive, RegistryCache& cache) : m_hive(hive), m_cache(cache) {}

    /// @throws RegistryFailure ERROR_KEY_DELETED if there is no such key any more.
    KeyNode& Key(std::int64_t key);
    /// The subkey of a name, 0 if there is none.
    std::int64_t Child(std::int64_t key, std::string_view folded);
    /// The value of a name; its row is 0 if there is none.
    Value& ValueOf(std::int64_t key, std::string_view folded);
    void LoadData(Value& value);
    void LoadValues(std::int64_t key);
    void LoadSubkeys(std::int64_t key);
    void LoadLastWrite(std::int64_t key);

private:
    Hive& m_hive;
    RegistryCache& m_cache;
};

/// The process's registry: its hive, opened at the first call that needs it, and what is remembered of it.
///
/// Two locks, taken in this order: the connection's, for as long as SQL runs, and the memory's. What is remembered
/// changes only under both; reading it takes the second one, shared. So reading goes on while a thread commits.
class Registry {
public:
    static Registry& Get();

    /// Gives `ask.Use(KeyNode&)` what it wants to know of @p key.
    ///
    /// `bool ask.Knows(KeyNode&)` tells whether that is remembered; if not, `ask.Load(Session&, key)` is called, in one
    /// transaction. Use returns the call's result. `ask.Release(KeyNode&)` follows Load and Use: it forgets what is too
    /// large to be kept.
    /// @return a result of the registry.
    template <class Ask>
    LONG Look(std::int64_t key, const Ask& ask) noexcept {
        if (const std::optional<LONG> result = LookInMemory(key, ask))
            return *result;
        return Guarded([&] { return LookInHive(key, ask); });
    }

    /// As Look, as far as what is remembered goes. @return nothing if that does not hold what is asked for.
    template <class Ask>
    std::optional<LONG> LookInMemory(std::int64_t key, const Ask& ask) {
        const std::shared_lock guard(m_memoryLocks.front());
        if (!m_cache.IsCurrent())
            return std::nullopt;
        KeyNode* const node = m_cache.Find(key);
        if (node == nullptr)
            return std::nullopt;
        if (!node->exists)
            return ERROR_KEY_DELETED;
        return ask.Knows(*node) ? std::optional<LONG>(ask.Use(*node)) : std::nullopt;
    }

    /// Changes the hive in one transaction: `change.Look(Session&)` finds out what there is, `change.Make(Hive&)` does
    /// the work, and `change.Record(RegistryCache&)` repeats it in what is remembered. Each may end the call by
    /// throwing RegistryFailure, Record excepted.
    template <class Change>
    LONG Commit(Change& change) noexcept {
        return Guarded([&] {
            CommitOpened(change);
            return ERROR_SUCCESS;
        });
    }

    LONG Flush() noexcept;

    /// Closes the hive. The next call opens the one at @p path, or the process's usual one if it is empty.
    void Use(const std::string& path);

    /// @name The fork of a process: neither side has an open connection during it.
    /// @{
    void BeforeFork();
    void AfterForkInParent();
    void AfterForkInChild();
    /// @}

    /// The process ends; the hive is left tidy if nobody is using it.
    void CloseAtExit();

private:
    Registry();

    template <class Ask>
    LONG LookInHive(std::int64_t key, const Ask& ask) {
        const std::lock_guard connection(m_connectionLock);
        Hive& hive = Opened();
        const std::unique_lock memory(m_memoryLocks.front());
        LONG result = ERROR_SUCCESS;
        hive.Read([&] {
            m_cache.Refresh();
            WholeOrNothing(m_cache, [&] {
                Session session(hive, m_cache);
                session.Key(key);
                ask.Load(session, key);
                KeyNode& node = session.Key(key);
                result = ask.Use(node);
                ask.Release(node);
            });
        });
        // What came in meanwhile may be in part of what was read, so that only this call's own state is whole.
        if (!m_cache.IsCurrent())
            m_cache.Clear();
        m_cache.Trim();
        return result;
    }

    template <class Change>
    void CommitOpened(Change& change) {
        const std::lock_guard connection(m_connectionLock);
        Hive& hive = Opened();
        hive.Write([&] {
            {
                const std::unique_lock memory(m_memoryLocks.front());
                m_cache.Refresh(); // nobody else commits from here to the end of the transaction
                WholeOrNothing(m_cache, [&] {
                    Session session(hive, m_cache);
                    change.Look(session);
                });
            }
            change.Make(hive);
        });
        const std::unique_lock memory(m_memoryLocks.front());
        if (m_cache.FollowOwnCommit())
            Record(change);
        m_cache.Trim();
    }

    // The change is made: that there is no memory to remember it by is no failure of the call.
    template <class Change>
    void Record(Change& change) try {
        change.Record(m_cache);
    } catch (const std::bad_alloc&) {
        m_cache.Clear();
    }

    // A load that ends early may leave a key half known. A refusal is no such end: it comes of what is known.
    template <class Body>
    static void WholeOrNothing(RegistryCache& cache, Body body) try {
        body();
    } catch (const RegistryFailure&) {
        throw;
    } catch (...) {
        cache.Clear();
        throw;
    }

    // Every way to fail becomes the result of the call.
    template <class Body>
    LONG Guarded(Body body) noexcept try {
        return body();
    } catch (const RegistryFailure& failure) {
        return failure.code;
    } catch (const SqliteFailure& failure) {
        return AfterFailure(failure);
    } catch (const std::bad_alloc&) {
        return ERROR_NOT_ENOUGH_MEMORY;
    }

    LONG AfterFailure(const SqliteFailure& failure) noexcept;
    Hive& Opened();
    void Open(const std::string& path);
    void Close();
    [[noreturn]] void Refuse(LONG code);

    std::mutex m_connectionLock;
    // The first one is in use. A child process goes on with a new one, see AfterForkInChild.
    std::forward_list<std::shared_mutex> m_memoryLocks{1};

    // Guarded by the connection's lock.
    std::string m_path; // empty: not chosen yet
    std::unique_ptr<Hive> m_hive;
    bool m_checked = false; // this process has read all pages of this hive before
    // A file that was refused is not looked at again before it changes.
    LONG m_refusal = ERROR_SUCCESS;
    FileSignature m_refused;

    RegistryCache m_cache; // guarded by the memory's lock
};

} // namespace kel::platform
