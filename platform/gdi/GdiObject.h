#pragma once

/// @file
/// The table of drawing objects. A kind of object is a class derived from GdiObject with a constant `kType`:
///
///     HGDIOBJ handle = AddObject(std::make_shared<PenObject>(description));
///     if (const auto pen = FindObject<PenObject>(handle)) // keeps it for the length of the call
///         ...
///
/// The table is guarded by a lock, the objects are not: Windows, too, leaves one context and its bitmap to one thread.

#include <kelcore/platform/gdiobjects.h>

#include "platform/kernel/LastError.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <new>
#include <string>

namespace kel::platform {

/// Kinds, with the numbers that stand in bits 16 to 22 of a handle.
enum class GdiType : std::uint8_t { Context = 1, Region = 4, Bitmap = 5, Palette = 8, Font = 10, Brush = 16, Pen = 48 };

class GdiObject {
public:
    explicit GdiObject(GdiType type) : m_type(type) {}
    GdiObject(const GdiObject&) = delete;
    GdiObject& operator=(const GdiObject&) = delete;
    virtual ~GdiObject() = default;

    GdiType Type() const { return m_type; }
    HGDIOBJ Handle() const { return m_handle; }
    bool IsStock() const { return m_stock; }

    /// In how many contexts, and states put aside, it is selected.
    int Selections() const { return m_selections; }

    /// What GetObjectType tells.
    virtual DWORD PublicType() const = 0;

    /// GetObjectA: stores the description, or answers its size for a null @p buffer. 0 if the object has none.
    virtual int Describe(int /*size*/, void* /*buffer*/) const { return 0; }

    /// What the ledger says beside the kind: sizes, colours.
    virtual std::string Details() const { return {}; }

private:
    friend class GdiTable;
    friend class Selection;
    const GdiType m_type;
    bool m_stock = false;
    std::atomic<bool> m_doomed{false}; // deleted, perhaps while selected
    HGDIOBJ m_handle = nullptr;
    std::atomic<int> m_selections{0};
};

/// Gives @p object a handle. Stock objects are not counted and cannot be removed.
/// @return null with ERROR_NOT_ENOUGH_MEMORY when memory or handles are short; the object is let go then.
HGDIOBJ AddObject(std::shared_ptr<GdiObject> object, bool stock = false);

/// The object of a handle, null if there is none. The last error stays.
std::shared_ptr<GdiObject> FindAnyObject(HGDIOBJ handle);

/// The object of a handle, not held by the caller: for contexts, in calls that are made by the thousand. A context
/// belongs to one thread at a time, so nobody deletes it while one of its calls runs.
GdiObject* PeekObject(HGDIOBJ handle);

/// The object of a handle if it is of that kind; otherwise null with ERROR_INVALID_HANDLE.
template <class T>
std::shared_ptr<T> FindObject(HGDIOBJ handle) {
    std::shared_ptr<GdiObject> object = FindAnyObject(handle);
    if (!object || object->Type() != T::kType) {
        Fail(ERROR_INVALID_HANDLE);
        return nullptr;
    }
    return std::static_pointer_cast<T>(std::move(object));
}

/// Takes the handle out of the table, at once or, for an object that is selected, when it is no more. The object lives
/// as long as somebody holds it.
/// @return false if another thread was faster.
bool RemoveObject(GdiObject& object);

/// Holds an object as selected: counted, and with its handle valid until the last selection goes.
class Selection {
public:
    Selection() = default;
    explicit Selection(std::shared_ptr<GdiObject> object);
    Selection(const Selection& other) : Selection(other.m_object) {}
    Selection(Selection&& other) noexcept = default;
    Selection& operator=(Selection other) noexcept {
        m_object.swap(other.m_object);
        return *this;
    }
    ~Selection();

    GdiObject* Get() const { return m_object.get(); }
    const std::shared_ptr<GdiObject>& Shared() const { return m_object; }

private:
    std::shared_ptr<GdiObject> m_object;
};

/// A selection of one kind of object.
template <class T>
class Selected : public Selection {
public:
    Selected() = default;
    explicit Selected(std::shared_ptr<T> object) : Selection(std::move(object)) {}

    explicit operator bool() const { return Get() != nullptr; }
    T* operator->() const { return static_cast<T*>(Get()); }
    T& operator*() const { return *operator->(); }
};

/// Runs @p work and returns its result, or @p failure with ERROR_NOT_ENOUGH_MEMORY when memory is short.
template <class Result, class Work>
Result WithMemory(Result failure, Work work) {
    try {
        return work();
    } catch (const std::bad_alloc&) {
        Fail(ERROR_NOT_ENOUGH_MEMORY);
        return failure;
    }
}

} // namespace kel::platform
