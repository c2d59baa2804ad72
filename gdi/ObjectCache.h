#pragma once

#include <kelcore/platform.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <unordered_map>

/// The cache of drawing objects. One thread at a time.
namespace kel {

/// What distinguishes the kinds of objects in the cache:
/// - `Canonical`: the description that stands for all that the system makes the same object of;
/// - `Less`: the order of descriptions; two that are not less than each other are one;
/// - `New`: the system's object, null when it refuses.
struct BrushKind {
    using Handle = HBRUSH;
    using Description = LOGBRUSH;
    static LOGBRUSH Canonical(const LOGBRUSH& brush) noexcept;
    static bool Less(const LOGBRUSH& left, const LOGBRUSH& right) noexcept;
    static HBRUSH New(const LOGBRUSH& brush);
};
struct PenKind {
    using Handle = HPEN;
    using Description = LOGPEN;
    static LOGPEN Canonical(const LOGPEN& pen) noexcept;
    static bool Less(const LOGPEN& left, const LOGPEN& right) noexcept;
    static HPEN New(const LOGPEN& pen);
};
struct FontKind {
    using Handle = HFONT;
    using Description = LOGFONTA;
    static LOGFONTA Canonical(const LOGFONTA& font) noexcept;
    static bool Less(const LOGFONTA& left, const LOGFONTA& right) noexcept;
    static HFONT New(const LOGFONTA& font);
};

/// The objects of one kind that were made from descriptions, each with the number of its owners.
template <class Kind>
class ObjectCache {
public:
    using Handle = typename Kind::Handle;
    using Description = typename Kind::Description;

    /// One more owner for the object of @p description, which is made if there is none.
    /// @return null when the system refuses; nothing is remembered of that.
    Handle Obtain(const Description& description) {
        const Description key = Kind::Canonical(description);
        auto place = m_entries.lower_bound(key);
        if (place == m_entries.end() || Kind::Less(key, place->first)) {
            const Handle handle = Kind::New(key);
            if (handle == nullptr)
                return nullptr;
            place = Insert(place, key, handle);
        }
        ++place->second.owners;
        return place->second.handle;
    }

    /// One more owner for @p handle, if it is one of the cache's. @return @p handle.
    Handle Share(Handle handle) {
        const auto indexed = Find(handle);
        if (indexed != m_places.end())
            ++indexed->second->second.owners;
        return handle;
    }

    /// One owner less for @p handle, if it is one of the cache's; the last one's is deleted.
    void Release(Handle handle) {
        const auto indexed = Find(handle);
        if (indexed == m_places.end() || --indexed->second->second.owners != 0)
            return;
        DeleteObject(handle);
        m_entries.erase(indexed->second);
        m_places.erase(indexed);
    }

    /// Deletes all that is left.
    void Clear() {
        for (const auto& [description, entry] : m_entries)
            DeleteObject(entry.handle);
        m_entries.clear();
        m_places.clear();
    }

private:
    struct Entry {
        Handle handle;
        std::uint32_t owners;
    };
    struct Order {
        bool operator()(const Description& left, const Description& right) const noexcept {
            return Kind::Less(left, right);
        }
    };
    using Entries = std::map<Description, Entry, Order>;
    using Place = typename Entries::iterator;
    using Places = std::unordered_multimap<Handle, Place>;

    Place Insert(Place before, const Description& description, Handle handle) {
        Place place = m_entries.end();
        try {
            place = m_entries.emplace_hint(before, description, Entry{handle, 0});
            m_places.emplace(handle, place);
        } catch (...) {
            DeleteObject(handle);
            if (place != m_entries.end())
                m_entries.erase(place);
            throw;
        }
        return place;
    }

    // The entry of a handle. A client that deletes an object of the cache makes the system use its handle again; of the
    // entries with one handle the first in order counts then.
    typename Places::iterator Find(Handle handle) {
        const auto [first, last] = m_places.equal_range(handle);
        if (first == last)
            return m_places.end();
        return std::min_element(first, last, [](const auto& left, const auto& right) {
            return Kind::Less(left.second->first, right.second->first);
        });
    }

    Entries m_entries;
    Places m_places; // for release: a search through the entries would take as long as there are entries
};

/// The caches, from the library's loading on. They are emptied when its static objects go, and stay usable after that.
ObjectCache<BrushKind>& Brushes() noexcept;
ObjectCache<PenKind>& Pens() noexcept;
ObjectCache<FontKind>& Fonts() noexcept;

} // namespace kel
