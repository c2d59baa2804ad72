// Stores a ring of two objects in CRC blocks in memory and reads it back. Exits with 0 when the ring came back whole.

#include <kelcore/runtime.h>
#include <kelcore/stream.h>

#include <iostream>

class Station : public ISerializable, public virtual KelUnknown {
public:
    int number = 0;
    Station* next = nullptr;

    void Read(SerializingInputStream& stream, short) override {
        stream >> number;
        next = dynamic_cast<Station*>(stream.ReadRef());
    }
    void Write(SerializingOutputStream& stream) const override {
        stream << number;
        stream.WriteRef(next);
    }
    short Version() const override { return 1; }
};

static NarrowString Store(const IObjectFactory& factory, const Station& station) {
    MemoryOutputStream memory;
    CRCOutputStream blocks(memory);
    SerializingOutputStream objects(factory, blocks);
    objects.WriteRef(&station);
    objects.Flush();
    return memory.GetContent();
}

static Station* Load(const IObjectFactory& factory, const NarrowString& stored) {
    MemoryInputStream memory(stored);
    CRCInputStream blocks(memory);
    SerializingInputStream objects(factory, blocks);
    return dynamic_cast<Station*>(objects.ReadRef());
}

static bool IsTheRing(const Station* first) {
    return first && first->number == 1 && first->next && first->next->number == 2 && first->next->next == first;
}

int main() {
    ObjectFactory factory;
    factory.RegisterType<Station>();
    Station one, two;
    one.number = 1;
    one.next = &two;
    two.number = 2;
    two.next = &one;

    try {
        Station* loaded = Load(factory, Store(factory, one));
        const bool whole = IsTheRing(loaded);
        std::cout << (whole ? "the ring came back\n" : "the ring is broken\n");
        if (whole) {
            loaded->next->Release();
            loaded->Release();
        }
        return whole ? 0 : 1;
    } catch (const StreamBase::Exception& failure) {
        std::cerr << "stream failure " << failure.code << "\n";
        return 1;
    }
}
