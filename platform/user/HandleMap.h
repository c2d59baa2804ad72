#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace kel::platform {

/// Handles of one kind of object. A value is not given out twice, so that a stale handle is refused. Calls may come
/// from any thread; the objects are not guarded.
template <class Handle, class T>
class HandleMap {
public:
    /// @throws std::bad_alloc
    Handle Add(std::shared_ptr<T> object) {
        const std::lock_guard guard(m_mutex);
        m_last += 2; // even numbers above 16 bits, so that none is taken for an index or a count
        m_objects.emplace(m_last, std::move(object));
        return reinterpret_cast<Handle>(m_last);
    }

    std::shared_ptr<T> Find(Handle handle) const {
        const std::lock_guard guard(m_mutex);
        const auto found = m_objects.find(reinterpret_cast<std::uintptr_t>(handle));
        return found == m_objects.end() ? nullptr : found->second;
    }

    /// @return the object; null if the handle names none, or no more.
    std::shared_ptr<T> Remove(Handle handle) {
        const std::lock_guard guard(m_mutex);
        const auto found = m_objects.find(reinterpret_cast<std::uintptr_t>(handle));
        if (found == m_objects.end())
            return nullptr;
        std::shared_ptr<T> object = std::move(found->second);
        m_objects.erase(found);
        return object;
    }

    /// In the order of their making. @throws std::bad_alloc
    std::vector<std::shared_ptr<T>> All() const {
        const std::lock_guard guard(m_mutex);
        std::vector<std::shared_ptr<T>> objects;
        for (const auto& [handle, object] : m_objects)
            objects.push_back(object);
        return objects;
    }

    std::size_t Count() const {
        const std::lock_guard guard(m_mutex);
        return m_objects.size();
    }

private:
    mutable std::mutex m_mutex;
    std::map<std::uintptr_t, std::shared_ptr<T>> m_objects;
    std::uintptr_t m_last = 0x10000;
};

} // namespace kel::platform
