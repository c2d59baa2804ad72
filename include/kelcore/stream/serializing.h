#pragma once

/// @file
/// Object graphs in streams. docs/formats/object-records.md has the records and the numbering of objects.

#include <kelcore/stream/core.h>
#include <kelcore/stream/factory.h>

class SerializingInputStream;
class SerializingOutputStream;

namespace kel {
class ReadReferences;
class ReadValues;
class WrittenIdentities;
class WrittenValues;
struct ReadClass;
struct WrittenClass;
} // namespace kel

/// An object that can be stored. Register its class in the factory of the streams.
class KELCORE_API ISerializable : virtual public IUnknown {
public:
    /// Replaces this object's state by the data that follows, with the calls that match those of Write: plain values
    /// for plain values, Read or Create for Write, ReadRef for WriteRef.
    /// @param version what Version answered when the data was written; never more than Version answers now.
    virtual void Read(SerializingInputStream& stream, short version) = 0;
    /// Writes this object's state: values with the operators, contained objects with Write, pointers with WriteRef.
    virtual void Write(SerializingOutputStream& stream) const = 0;
    /// The class's current format; raise it whenever what Write writes changes.
    virtual short Version() const = 0;
};

/// Writes objects and, through pointers, whole graphs: an object met again is stored as a reference to the first, so
/// shared objects, null pointers and cycles come back as they were. It is also a plain byte stream over its inner
/// stream.
///
/// Objects written through WriteRef must stay alive until the stream is destroyed. After an exception the stream is not
/// to be used further. Graphs may be nested as deeply as the thread's stack allows: when too little of it is left,
/// code 2 is thrown instead of overflowing it.
class KELCORE_API SerializingOutputStream : public OutputStream {
public:
    /// @param factory and @param inner are not owned and must outlive the stream.
    SerializingOutputStream(const IObjectFactory& factory, OutputStream& inner);
    SerializingOutputStream(const SerializingOutputStream&) = delete;
    SerializingOutputStream& operator=(const SerializingOutputStream&) = delete;
    /// Lets go of the copies kept for value-sharing. Does not flush.
    ~SerializingOutputStream();

    KELCORE_INLINE void Write(const char* data, int count) override { m_inner.Write(data, count); }
    void Flush() override;

    /// Stores an object by value, or, where its class shares equal objects, a back-reference to an equal one. Pointers
    /// to it are not recognised afterwards.
    /// @throws Exception code 2, "Unexpected object in stream", before any byte of it, if its class is not registered
    /// or the stack is nearly used up; what the inner stream and the object throw.
    void Write(const ISerializable& object);
    /// Stores a pointer, null included, and behind it, the first time, the object itself.
    /// @throws as Write.
    void WriteRef(const ISerializable* object);

private:
    friend struct kel::StreamLayout;

    kel::WrittenClass Admit(const ISerializable& object);
    void WriteRecord(const ISerializable& object, const kel::WrittenClass& known);
    bool WriteBackReference(const ISerializable& object, const kel::WrittenClass& known, std::uint32_t number);
    void WriteCommand(std::uint32_t command, std::uint32_t number);
    template <class Field>
    void WriteField(Field field);

    const IObjectFactory& m_factory;
    OutputStream& m_inner;
    __int32 m_counter;
    std::unique_ptr<kel::WrittenValues> m_values;
    std::unique_ptr<kel::WrittenIdentities> m_identities;
};

/// Reads the objects of a SerializingOutputStream back; it must make the same sequence of object calls on a new stream
/// that starts where the writer's started.
///
/// Damaged data ends in an exception, with memory bounded by the bytes that arrived and nesting by the thread's stack;
/// after it the stream is not to be used further.
class KELCORE_API SerializingInputStream : public InputStream {
public:
    /// @param factory and @param inner are not owned and must outlive the stream.
    SerializingInputStream(const IObjectFactory& factory, InputStream& inner);
    SerializingInputStream(const SerializingInputStream&) = delete;
    SerializingInputStream& operator=(const SerializingInputStream&) = delete;
    /// Lets go of the copies kept for value-sharing; objects handed out are their holders'.
    ~SerializingInputStream();

    void Read(char* data, int count) override;

    /// Reads the next object into an existing one.
    /// @throws Exception code 2 if the stream does not hold an object of that class here, code 5 if it is newer than
    /// the class; what the inner stream and the object throw.
    void Read(ISerializable& object);
    /// Reads the next object into a new one.
    /// @return the object, whose one reference is the caller's.
    /// @throws as Read; an object created by the failing call has been released.
    ISerializable* Create();
    /// Reads a pointer.
    /// @return null, or the object: the first time it is met with the one reference from its creation, which is the
    /// caller's; later the same pointer without a further reference.
    /// @throws as Create.
    ISerializable* ReadRef();

private:
    friend struct kel::StreamLayout;

    enum class Reached { ByValue, ByReference };

    ISerializable* ReadNext(ISerializable* target, Reached reached);
    ISerializable* ReadBackReference(ISerializable* target, std::uint32_t expected, Reached reached,
                                     std::uint32_t number);
    ISerializable* ReadNew(kel::ReadClass& known, Reached reached, std::uint32_t number);
    void ReadData(ISerializable& object, const IObjectFactoryObjectFunctions& functions, short version,
                  std::uint32_t number);
    template <class Field>
    Field ReadField();

    const IObjectFactory& m_factory;
    InputStream& m_inner;
    __int32 m_counter;
    std::unique_ptr<kel::ReadValues> m_values;
    std::unique_ptr<kel::ReadReferences> m_references;
};
