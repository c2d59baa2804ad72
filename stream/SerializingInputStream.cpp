#include <kelcore/stream/endpoints.h>
#include <kelcore/stream/serializing.h>

#include "stream/Failures.h"
#include "stream/FlatMap.h"
#include "stream/ObjectRecords.h"
#include "stream/StackReserve.h"

#include <array>
#include <vector>

namespace kel {

struct ReadClass {
    const IObjectFactoryObjectFunctions* functions;
    // The run-time type seen last, and where ISerializable lies in its objects, seen from IUnknown.
    const std::type_info* type;
    std::ptrdiff_t distance;

    /// @return null if the object is no ISerializable. A cast costs much more than comparing types does.
    ISerializable* Serializable(IUnknown* object) {
        if (object == nullptr)
            return nullptr;
        const std::type_info* const found = &typeid(*object);
        if (found == type)
            return reinterpret_cast<ISerializable*>(reinterpret_cast<char*>(object) + distance);
        auto* const result = dynamic_cast<ISerializable*>(object);
        if (result != nullptr) {
            type = found;
            distance = reinterpret_cast<char*>(result) - reinterpret_cast<char*>(object);
        }
        return result;
    }
};

/// The value table, and what the factory said about each class met.
class ReadValues {
public:
    ReadValues() = default;
    ReadValues(const ReadValues&) = delete;
    ReadValues& operator=(const ReadValues&) = delete;
    ~ReadValues() {
        m_copies.ForEach([](IUnknown* copy) {
            if (copy != nullptr)
                copy->Release();
        });
    }

    /// @throws Exception code 2 if the class is not registered.
    /// @return valid until the next call.
    ReadClass& ClassOf(const IObjectFactory& factory, std::uint32_t id) {
        if (id != m_lastId || m_last == nullptr) {
            m_last = m_classes.Find(id);
            if (m_last == nullptr)
                m_last = &m_classes.Add(id, Describe(factory, id));
            m_lastId = id;
        }
        return *m_last;
    }

    std::uint32_t IdOf(const IObjectFactory& factory, const std::type_info& type) {
        const std::uint32_t* known = m_ids.Find(&type);
        return known != nullptr ? *known : m_ids.Add(&type, static_cast<std::uint32_t>(factory.GetClassID(type)));
    }

    /// Keeps a copy of @p object, if its class makes one.
    void Keep(const IObjectFactoryObjectFunctions& functions, IUnknown* object, std::uint32_t number) {
        IUnknown*& kept = m_copies.Add(number + 1, nullptr);
        kept = functions.Clone(object);
    }

    /// @return null if there is none.
    IUnknown* Kept(std::uint32_t number) {
        IUnknown* const* const kept = m_copies.Find(number + 1);
        return kept == nullptr ? nullptr : *kept;
    }

private:
    static ReadClass Describe(const IObjectFactory& factory, std::uint32_t id) {
        const auto* functions = factory.GetObjectFactoryObjectFunctions(static_cast<int>(id));
        if (id == kCommand || functions == nullptr)
            ThrowFailure(kMalformedObjects, kUnexpectedObject);
        return {functions, nullptr, 0};
    }

    FlatMap<std::uint32_t, IUnknown*> m_copies; // under the object's number + 1, which is never 0
    FlatMap<std::uint32_t, ReadClass> m_classes;
    FlatMap<const std::type_info*, std::uint32_t> m_ids;
    std::uint32_t m_lastId = 0;
    ReadClass* m_last = nullptr;
};

/// The reference table: numbers are handed out one by one and each costs bytes of the stream, so arrays will do, in
/// parts that never move. Beside it the watch over the stack, which nesting uses up.
class ReadReferences {
public:
    explicit ReadReferences(InputStream& inner)
        : memory(typeid(inner) == typeid(MemoryInputStream) ? static_cast<MemoryInputStream*>(&inner) : nullptr) {}

    void Enter(std::uint32_t number, ISerializable* object) {
        while (number / kPart >= m_parts.size())
            m_parts.push_back(std::make_unique<Part>());
        (*m_parts[number / kPart])[number % kPart] = object;
    }

    void Withdraw(std::uint32_t number) {
        if (number / kPart < m_parts.size())
            (*m_parts[number / kPart])[number % kPart] = nullptr;
    }

    /// @return null if there is none.
    ISerializable* Find(std::uint32_t number) const {
        return number / kPart < m_parts.size() ? (*m_parts[number / kPart])[number % kPart] : nullptr;
    }

    StackReserve stack;
    // The inner stream, if it is memory and no class derived from it: fields are then read without virtual calls.
    MemoryInputStream* const memory;

private:
    static constexpr std::size_t kPart = 512;
    using Part = std::array<ISerializable*, kPart>;

    std::vector<std::unique_ptr<Part>> m_parts;
};

} // namespace kel

namespace {

[[noreturn]] void ThrowMalformed(const char* message) {
    kel::ThrowFailure(kel::kMalformedObjects, message);
}

// An object that is being read. If that fails it is released, and nothing refers to it any longer.
class NewObject {
public:
    NewObject(IUnknown* object, kel::ReadReferences& references, std::uint32_t number)
        : m_object(object), m_references(references), m_number(number) {}
    NewObject(const NewObject&) = delete;
    NewObject& operator=(const NewObject&) = delete;
    ~NewObject() {
        if (m_object == nullptr)
            return;
        m_references.Withdraw(m_number);
        m_object->Release();
    }

    IUnknown* Get() const { return m_object; }
    void Keep() { m_object = nullptr; }

private:
    IUnknown* m_object;
    kel::ReadReferences& m_references;
    std::uint32_t m_number;
};

} // namespace

SerializingInputStream::SerializingInputStream(const IObjectFactory& factory, InputStream& inner)
    : m_factory(factory), m_inner(inner), m_counter(0), m_values(std::make_unique<kel::ReadValues>()),
      m_references(std::make_unique<kel::ReadReferences>(inner)) {}

SerializingInputStream::~SerializingInputStream() = default;

// Inlined, a field from memory is a load and a comparison.
template <class Field>
[[gnu::always_inline]] inline Field SerializingInputStream::ReadField() {
    Field field = 0;
    auto* const bytes = reinterpret_cast<char*>(&field);
    if (MemoryInputStream* const memory = m_references->memory)
        memory->MemoryInputStream::Read(bytes, static_cast<int>(sizeof field));
    else
        m_inner.Read(bytes, static_cast<int>(sizeof field));
    return field;
}

void SerializingInputStream::Read(char* data, int count) {
    if (MemoryInputStream* const memory = m_references->memory)
        memory->MemoryInputStream::Read(data, count);
    else
        m_inner.Read(data, count);
}

void SerializingInputStream::Read(ISerializable& object) {
    ReadNext(&object, Reached::ByValue);
}

ISerializable* SerializingInputStream::Create() {
    return ReadNext(nullptr, Reached::ByValue);
}

ISerializable* SerializingInputStream::ReadRef() {
    std::uint32_t own = kel::RaiseCounter(m_counter);
    const auto command = ReadField<std::uint32_t>();
    const auto which = ReadField<std::uint32_t>();
    if (command != kel::kCommand || which != kel::kReferenceCommand)
        ThrowMalformed("Next stream object is not a reference");
    const auto number = ReadField<std::uint32_t>();
    if (number == kel::kNullReference || number == kel::kOtherNullReference)
        return nullptr;
    // A stream that begins with a reference is numbered from 1.
    if (own == 0 && number == 1)
        own = kel::RaiseCounter(m_counter);
    if (number == own)
        return ReadNext(nullptr, Reached::ByReference);
    ISerializable* const known = m_references->Find(number);
    if (known == nullptr)
        ThrowMalformed("Reference to non-existing object");
    return known;
}

ISerializable* SerializingInputStream::ReadNext(ISerializable* target, Reached reached) {
    if (m_references->stack.IsReached())
        ThrowMalformed(kel::kUnexpectedObject);
    const std::uint32_t expected = target == nullptr ? 0 : m_values->IdOf(m_factory, typeid(*target));
    const std::uint32_t number = kel::RaiseCounter(m_counter);
    const auto id = ReadField<std::uint32_t>();
    if (id == kel::kCommand)
        return ReadBackReference(target, expected, reached, number);
    kel::ReadClass& known = m_values->ClassOf(m_factory, id);
    if (target == nullptr)
        return ReadNew(known, reached, number);
    if (id != expected)
        ThrowMalformed(kel::kUnexpectedObject);
    const auto version = ReadField<short>();
    ReadData(*target, *known.functions, version, number);
    return target;
}

ISerializable* SerializingInputStream::ReadBackReference(ISerializable* target, std::uint32_t expected, Reached reached,
                                                         std::uint32_t number) {
    if (ReadField<std::uint32_t>() != kel::kBackReferenceCommand)
        ThrowMalformed("Unknown command in stream");
    IUnknown* const kept = m_values->Kept(ReadField<std::uint32_t>());
    if (kept == nullptr)
        ThrowMalformed("Reference to unknown object in stream");
    const std::uint32_t id = m_values->IdOf(m_factory, typeid(*kept));
    if (target != nullptr && id != expected)
        ThrowMalformed("Wrong type of object in stream");
    kel::ReadClass& known = m_values->ClassOf(m_factory, id);
    if (target != nullptr) {
        known.functions->Assign(kept, target);
        return target;
    }
    NewObject clone(known.functions->Clone(kept), *m_references, number);
    ISerializable* const result = known.Serializable(clone.Get());
    if (result == nullptr)
        ThrowMalformed(kel::kUnexpectedObject);
    if (reached == Reached::ByReference)
        m_references->Enter(number, result);
    clone.Keep();
    return result;
}

ISerializable* SerializingInputStream::ReadNew(kel::ReadClass& known, Reached reached, std::uint32_t number) {
    const IObjectFactoryObjectFunctions& functions = *known.functions;
    const auto version = ReadField<short>();
    NewObject object(functions.Create(), *m_references, number);
    ISerializable* const result = known.Serializable(object.Get());
    if (result == nullptr)
        ThrowMalformed(kel::kUnexpectedObject);
    // Entered before its data is read, so that pointers back to it find it.
    if (reached == Reached::ByReference)
        m_references->Enter(number, result);
    ReadData(*result, functions, version, number);
    object.Keep();
    return result;
}

void SerializingInputStream::ReadData(ISerializable& object, const IObjectFactoryObjectFunctions& functions,
                                      short version, std::uint32_t number) {
    if (version > object.Version())
        kel::ThrowFailure(kel::kVersionTooHigh, "Object version too high");
    object.Read(*this, version);
    if (functions.ShareEqualObjects())
        m_values->Keep(functions, &object, number);
}
