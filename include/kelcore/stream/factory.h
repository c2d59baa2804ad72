#pragma once

/// @file
/// The registry of classes behind the object streams. A class is known in files by a 32-bit hash of its name, which is
/// the same on every compiler; docs/formats/object-records.md states both.

#include <kelcore/runtime/objects.h>

#include <cstddef>
#include <map>
#include <memory>
#include <stdexcept>
#include <type_traits>
#include <typeinfo>
#include <utility>

/// What can be done with the objects of one class. Every pointer designates an object's IUnknown.
/// ObjectFactory::RegisterType makes one for a class; write your own only for a class that cannot be copied by its own
/// operations.
class KELCORE_API IObjectFactoryObjectFunctions {
public:
    virtual ~IObjectFactoryObjectFunctions();
    /// @return a new object, whose one reference is the caller's.
    virtual IUnknown* Create() const = 0;
    /// Whether an object equal to one already written to the same stream is stored as a reference to that one.
    virtual bool ShareEqualObjects() const = 0;
    /// @return a new copy of @p source, whose one reference is the caller's.
    virtual IUnknown* Clone(IUnknown* source) const = 0;
    /// Makes @p target equal to @p source, both of this class.
    virtual void Assign(IUnknown* source, IUnknown* target) const = 0;
    /// Whether two objects of this class have equal values.
    virtual bool Equals(IUnknown* a, IUnknown* b) const = 0;
};

/// What the object streams ask a registry of classes.
class KELCORE_API IObjectFactory : virtual public IUnknown {
public:
    /// The identifier of a class, registered or not.
    virtual int GetClassID(const std::type_info& type) const = 0;
    virtual int GetClassID(const char* name) const = 0;
    /// @return what can be done with the class, owned by the factory; null if it is not registered.
    virtual const IObjectFactoryObjectFunctions* GetObjectFactoryObjectFunctions(int id) const = 0;
    /// @return a new object, whose one reference is the caller's; null if the class is not registered.
    virtual IUnknown* CreateObject(const std::type_info& type) const = 0;
    virtual IUnknown* CreateObject(const char* name) const = 0;
    virtual IUnknown* CreateObject(int id) const = 0;
};

/// The registry: fill it, then use it read-only, from several threads at once if need be.
/// @code
///     ObjectFactory* factory = new ObjectFactory;
///     factory->RegisterType<Album>();
///     factory->RegisterType<Caption>(/*shareEqualObjects*/ true);
///     ...
///     factory->Release();
/// @endcode
class KELCORE_API ObjectFactory : public IObjectFactory, public virtual KelUnknown {
public:
    ObjectFactory();
    ObjectFactory(const ObjectFactory&) = delete;
    ObjectFactory& operator=(const ObjectFactory&) = delete;
    /// Destroys the functions object of every class.
    ~ObjectFactory() override;

    /// Hashes the type's name without "struct " and "class ". It computes anew at each call.
    int GetClassID(const std::type_info& type) const override;
    /// Hashes @p name: for each byte c, taken as signed, h += (h << 1) ^ c modulo 2^32, from h = 0.
    int GetClassID(const char* name) const override;
    const IObjectFactoryObjectFunctions* GetObjectFactoryObjectFunctions(int id) const override;
    IUnknown* CreateObject(const std::type_info& type) const override;
    IUnknown* CreateObject(const char* name) const override;
    IUnknown* CreateObject(int id) const override;

    /// Registers @p Type, which needs a default constructor, copying and, to share equal objects, `operator==`.
    /// Whatever its copying does to the reference count, clones start with 1 and assigned objects keep theirs.
    ///
    /// A later registration under the same identifier replaces an earlier one. Two names may hash to one identifier:
    /// ask GetObjectFactoryObjectFunctions beforehand where that would matter.
    /// @param name null for the type's own name. Objects are always written under the type's own name; a second
    /// registration under an old name lets Create and ReadRef read what was written before a class was renamed; Read
    /// into an existing object takes only the type's own name.
    /// @throws std::logic_error if equal objects shall be shared but @p Type has no `operator==`.
    template <class Type>
    void RegisterType(bool shareEqualObjects = false, const char* name = nullptr);

private:
    void Register(const IUnknown& example, const char* name, IObjectFactoryObjectFunctions* functions);

    std::map<int, IObjectFactoryObjectFunctions*> m_registry;
};

namespace kel {

template <class Type, class = void>
struct IsEqualityComparable : std::false_type {};
template <class Type>
struct IsEqualityComparable<Type, decltype(void(std::declval<const Type&>() == std::declval<const Type&>()))>
    : std::true_type {};

/// Brings an object's reference count to @p wanted, which is at least 1.
inline void SetReferenceCount(IUnknown& object, ULONG wanted) {
    ULONG count = object.AddRef();
    while (count > wanted)
        count = object.Release();
    while (count < wanted)
        count = object.AddRef();
}

/// The functions object of a class that is created, copied and compared by its own operations.
template <class Type>
class ObjectFunctions final : public IObjectFactoryObjectFunctions {
    static_assert(std::is_base_of_v<IUnknown, Type>, "registered classes derive from IUnknown");
    static_assert(std::is_default_constructible_v<Type>, "registered classes need a default constructor");
    static_assert(std::is_copy_constructible_v<Type> && std::is_copy_assignable_v<Type>,
                  "registered classes need copy construction and assignment");

public:
    explicit ObjectFunctions(bool shareEqualObjects) : m_share(shareEqualObjects), m_distance(Distance()) {
        if (m_share && !IsEqualityComparable<Type>::value)
            throw std::logic_error("a class whose equal objects are shared needs operator==");
    }

    IUnknown* Create() const override { return new Type; }
    bool ShareEqualObjects() const override { return m_share; }

    IUnknown* Clone(IUnknown* source) const override {
        Type* clone = new Type(Object(source));
        SetReferenceCount(*clone, 1);
        return clone;
    }

    void Assign(IUnknown* source, IUnknown* target) const override {
        const CountKeeper keeper(*target);
        Object(target) = Object(source);
    }

    bool Equals([[maybe_unused]] IUnknown* a, [[maybe_unused]] IUnknown* b) const override {
        if constexpr (IsEqualityComparable<Type>::value)
            return static_cast<const Type&>(Object(a)) == static_cast<const Type&>(Object(b));
        else
            return false;
    }

private:
    // Gives the target its count back also when the assignment throws.
    class CountKeeper {
    public:
        explicit CountKeeper(IUnknown& object) : m_object(object), m_count(object.AddRef() - 1) {}
        CountKeeper(const CountKeeper&) = delete;
        CountKeeper& operator=(const CountKeeper&) = delete;
        ~CountKeeper() { SetReferenceCount(m_object, m_count); }

    private:
        IUnknown& m_object;
        ULONG m_count;
    };

    // How far behind the object's begin its IUnknown lies, the same in all objects of just this class.
    static std::ptrdiff_t Distance() {
        Type* const example = new Type;
        IUnknown* const unknown = example;
        const std::ptrdiff_t distance = reinterpret_cast<char*>(unknown) - reinterpret_cast<char*>(example);
        unknown->Release();
        return distance;
    }

    // A cast down from a virtual base costs much more than comparing types, and sharing compares many objects.
    Type& Object(IUnknown* unknown) const {
        if (&typeid(*unknown) == &typeid(Type))
            return *reinterpret_cast<Type*>(reinterpret_cast<char*>(unknown) - m_distance);
        return dynamic_cast<Type&>(*unknown);
    }

    bool m_share;
    std::ptrdiff_t m_distance;
};

} // namespace kel

template <class Type>
void ObjectFactory::RegisterType(bool shareEqualObjects, const char* name) {
    auto functions = std::make_unique<kel::ObjectFunctions<Type>>(shareEqualObjects);
    struct Releaser {
        void operator()(IUnknown* object) const { object->Release(); }
    };
    const std::unique_ptr<IUnknown, Releaser> example(functions->Create());
    Register(*example, name, functions.get());
    functions.release();
}
