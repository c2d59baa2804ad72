#pragma once

/// @file
/// The table that turns handles into objects. A kind of object is a class derived from Object with a constant `kKind`:
///
///     class Search : public Object {
///     public:
///         static constexpr ObjectKind kKind = ObjectKind::Search;
///         Search() : Object(kKind) {}
///     };
///
///     HANDLE handle = OpenHandle(std::make_shared<Search>());   // null, with the last error set, when memory is short
///     Pinned<Search> search(handle);                            // in a call: keeps the object until the end of scope
///     if (!search)
///         return FALSE;                                         // the last error is ERROR_INVALID_HANDLE

#include <kelcore/platform/handles.h>

#include <atomic>
#include <memory>

namespace kel::platform {

enum class ObjectKind : unsigned char { AcceleratorTable, File, Mapping, Search, Semaphore, Thread, Key };

/// What handles name. An object lives while a handle, a pin or another object holds it.
class Object {
public:
    explicit Object(ObjectKind kind) : m_kind(kind) {}
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    virtual ~Object() = default;

    ObjectKind Kind() const { return m_kind; }

    /// The last handle was closed. The object may live on, held by other objects, but nobody can name it any more.
    virtual void HandlesClosed() {}

    /// The rights that generic rights (GENERIC_READ …) in @p access stand for.
    virtual DWORD SpecificRights(DWORD access) const { return access; }

    /// Whether the object is to stay open in a program that the process turns into; set as handles are made or changed.
    virtual void SetInheritable(bool) {}

private:
    friend class HandleTable;
    const ObjectKind m_kind;
    std::atomic<int> m_handles{0};
};

/// Makes a handle for @p object.
/// @param access the rights that calls through this handle have.
/// @return null with the last error set when memory is short; the object is let go then.
HANDLE OpenHandle(std::shared_ptr<Object> object, DWORD access = 0, bool inherit = false);

/// As OpenHandle, for a handle that OpenHandles leaves out: it belongs to nobody.
HANDLE OpenUncountedHandle(std::shared_ptr<Object> object, DWORD access, bool inherit = true);

/// Handles that are open, but for the uncounted ones.
std::size_t OpenSlots();

/// One row of the table.
struct HandleSlot {
    static constexpr std::uint32_t kOpen = 0x80000000u;

    std::atomic<std::uint32_t> state{0}; ///< kOpen while the handle is open, plus the number of pins
    std::atomic<std::uint32_t> flags{0}; ///< HANDLE_FLAG_ bits
    DWORD access = 0;
    std::shared_ptr<Object> object;
};

/// The slot of an open handle, pinned, or null; the last error is then ERROR_INVALID_HANDLE.
HandleSlot* PinSlot(HANDLE handle);
void UnpinSlot(HandleSlot* slot);

/// Keeps a handle's object from going away for the length of a call, even if another thread closes the handle
/// meanwhile.
class PinnedObject {
public:
    explicit PinnedObject(HANDLE handle) : m_slot(PinSlot(handle)) {}
    PinnedObject(const PinnedObject&) = delete;
    PinnedObject& operator=(const PinnedObject&) = delete;
    ~PinnedObject() {
        if (m_slot)
            UnpinSlot(m_slot);
    }

    explicit operator bool() const { return m_slot != nullptr; }

    /// Closes the handle; the object stays until this pin goes. @return false with the last error ERROR_INVALID_HANDLE
    /// if the handle is protected or another thread was faster.
    bool CloseHandle();

    const std::shared_ptr<Object>& Shared() const { return m_slot->object; }
    DWORD Access() const { return m_slot->access; }
    std::atomic<std::uint32_t>& Flags() const { return m_slot->flags; }

protected:
    /// Lets go of an object of the wrong kind: the handle counts as invalid.
    void Reject();

    HandleSlot* m_slot;
};

/// A pinned object of one kind; empty, with the last error ERROR_INVALID_HANDLE, for every other handle.
template <class T>
class Pinned : public PinnedObject {
public:
    explicit Pinned(HANDLE handle) : PinnedObject(handle) {
        if (m_slot && m_slot->object->Kind() != T::kKind)
            Reject();
    }

    T* operator->() const { return static_cast<T*>(m_slot->object.get()); }
    T& operator*() const { return *operator->(); }

    /// The object to be held beyond the call.
    std::shared_ptr<T> Hold() const { return std::static_pointer_cast<T>(m_slot->object); }
};

} // namespace kel::platform
