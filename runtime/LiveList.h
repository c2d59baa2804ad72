#pragma once

#include <algorithm>
#include <list>
#include <vector>

namespace kel {

/// Objects in the order of their arrival, which may come and go while the list is walked. One thread at a time.
template <class Object>
class LiveList {
public:
    const std::list<Object*>& All() const { return m_all; }

    void Add(Object* object) { m_all.push_back(object); }

    /// Removes every entry of @p object; walks that have not reached it will not.
    void Remove(Object* object) noexcept {
        m_all.remove(object);
        for (Walk* walk = m_innermost; walk != nullptr; walk = walk->outer)
            std::replace(walk->objects.begin(), walk->objects.end(), object, static_cast<Object*>(nullptr));
    }

    void Clear() noexcept { m_all.clear(); }

    /// Calls @p visit for each object that is on the list now and still is when its turn comes. A visit may walk too.
    template <class Visit>
    void ForEach(Visit visit) {
        Walk walk(m_all, m_innermost);
        for (std::size_t i = 0; i != walk.objects.size(); ++i)
            if (walk.objects[i] != nullptr)
                visit(*walk.objects[i]);
    }

private:
    // Enters itself on the chain of walks under way as long as it lives.
    struct Walk {
        Walk(const std::list<Object*>& all, Walk*& innermost)
            : objects(all.begin(), all.end()), outer(innermost), chain(innermost) {
            chain = this;
        }
        Walk(const Walk&) = delete;
        Walk& operator=(const Walk&) = delete;
        ~Walk() { chain = outer; }

        std::vector<Object*> objects;
        Walk* outer;
        Walk*& chain;
    };

    std::list<Object*> m_all;
    Walk* m_innermost = nullptr;
};

} // namespace kel
