#include <kelcore/stream/serializing.h>

#include "stream/Failures.h"
#include "stream/FlatMap.h"
#include "stream/ObjectRecords.h"
#include "stream/StackReserve.h"

#include <vector>

namespace kel {

struct KeptCopy {
    std::uint32_t number;
    IUnknown* object;
};

struct WrittenClass {
    int id;
    const IObjectFactoryObjectFunctions* functions;
    std::vector<KeptCopy>* copies; // in the order they were written
};

/// The value table, and what the factory said about each class met. A class can have several type descriptions, one in
/// each module, but its copies are kept under its identifier.
class WrittenValues {
public:
    WrittenValues() = default;
    WrittenValues(const WrittenValues&) = delete;
    WrittenValues& operator=(const WrittenValues&) = delete;
    ~WrittenValues() {
        for (auto& entry : m_copies)
            for (const KeptCopy& copy : entry.second)
                copy.object->Release();
    }

    const WrittenClass& ClassOf(const IObjectFactory& factory, const std::type_info& type) {
        if (&type == m_lastType)
            return m_last;
        WrittenClass* known = m_classes.Find(&type);
        m_last = known != nullptr ? *known : m_classes.Add(&type, Describe(factory, type));
        m_lastType = &type;
        return m_last;
    }

    /// Keeps a copy of @p object, if its class makes one.
    static void Keep(const WrittenClass& known, IUnknown* object, std::uint32_t number) {
        struct Releaser {
            void operator()(IUnknown* copy) const { copy->Release(); }
        };
        std::unique_ptr<IUnknown, Releaser> copy(known.functions->Clone(object));
        if (copy == nullptr)
            return;
        known.copies->push_back({number, copy.get()});
        static_cast<void>(copy.release()); // the table owns it now
    }

private:
    WrittenClass Describe(const IObjectFactory& factory, const std::type_info& type) {
        const int id = factory.GetClassID(type);
        const IObjectFactoryObjectFunctions* functions = factory.GetObjectFactoryObjectFunctions(id);
        if (id == static_cast<int>(kCommand) || functions == nullptr)
            ThrowFailure(kMalformedObjects, kUnexpectedObject);
        return {id, functions, &m_copies[id]};
    }

    std::map<int, std::vector<KeptCopy>> m_copies;
    FlatMap<const std::type_info*, WrittenClass> m_classes;
    const std::type_info* m_lastType = nullptr;
    WrittenClass m_last = {};
};

/// The identity table; beside it the watch over the stack, which only nesting through pointers can use up.
class WrittenIdentities {
public:
    FlatMap<const ISerializable*, std::uint32_t> numbers;
    StackReserve stack;
};

} // namespace kel

SerializingOutputStream::SerializingOutputStream(const IObjectFactory& factory, OutputStream& inner)
    : m_factory(factory), m_inner(inner), m_counter(0), m_values(std::make_unique<kel::WrittenValues>()),
      m_identities(std::make_unique<kel::WrittenIdentities>()) {}

SerializingOutputStream::~SerializingOutputStream() = default;

void SerializingOutputStream::Flush() {
    m_inner.Flush();
}

void SerializingOutputStream::Write(const ISerializable& object) {
    WriteRecord(object, Admit(object));
}

void SerializingOutputStream::WriteRef(const ISerializable* object) {
    if (object == nullptr) {
        kel::RaiseCounter(m_counter);
        WriteCommand(kel::kReferenceCommand, kel::kNullReference);
        return;
    }
    if (const std::uint32_t* number = m_identities->numbers.Find(object)) {
        kel::RaiseCounter(m_counter);
        WriteCommand(kel::kReferenceCommand, *number);
        return;
    }
    const kel::WrittenClass known = Admit(*object);
    // Number 0 would read as the null pointer, so a stream that begins with a reference is numbered from 1.
    if (m_counter == 0)
        m_counter = 1;
    const std::uint32_t number = kel::RaiseCounter(m_counter);
    m_identities->numbers.Add(object, number + 1);
    WriteCommand(kel::kReferenceCommand, number);
    WriteRecord(*object, known);
}

// Everything that can refuse an object, before any byte of it is written.
kel::WrittenClass SerializingOutputStream::Admit(const ISerializable& object) {
    if (m_identities->stack.IsReached())
        kel::ThrowFailure(kel::kMalformedObjects, kel::kUnexpectedObject);
    return m_values->ClassOf(m_factory, typeid(object));
}

void SerializingOutputStream::WriteRecord(const ISerializable& object, const kel::WrittenClass& known) {
    const std::uint32_t number = kel::RaiseCounter(m_counter);
    if (known.functions->ShareEqualObjects() && WriteBackReference(object, known, number))
        return;
    WriteField(known.id);
    WriteField(object.Version());
    object.Write(*this);
}

bool SerializingOutputStream::WriteBackReference(const ISerializable& object, const kel::WrittenClass& known,
                                                 std::uint32_t number) {
    // The functions take every object as changeable, though they have no reason to change this one.
    IUnknown* const unknown = const_cast<ISerializable*>(&object);
    for (const kel::KeptCopy& copy : *known.copies) {
        if (known.functions->Equals(unknown, copy.object)) {
            WriteCommand(kel::kBackReferenceCommand, copy.number);
            return true;
        }
    }
    kel::WrittenValues::Keep(known, unknown, number);
    return false;
}

void SerializingOutputStream::WriteCommand(std::uint32_t command, std::uint32_t number) {
    WriteField(kel::kCommand);
    WriteField(command);
    WriteField(number);
}

template <class Field>
void SerializingOutputStream::WriteField(Field field) {
    m_inner.Write(reinterpret_cast<const char*>(&field), static_cast<int>(sizeof field));
}
