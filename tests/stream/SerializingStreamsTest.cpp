#include "tests/stream/Probes.h"
#include "tests/stream/SampleObjects.h"

// The two classes of the format's worked example.
class B : public SampleObject {
public:
    B() { version = 3; }
    int value = 7;
    short readVersion = 0;
    bool operator==(const B& other) const { return value == other.value; }
    void Read(SerializingInputStream& stream, short stored) override {
        stream >> value;
        readVersion = stored;
    }
    void Write(SerializingOutputStream& stream) const override { stream << value; }
};

class A : public SampleObject {
public:
    ISerializable* first = nullptr;
    ISerializable* second = nullptr;
    void Read(SerializingInputStream& stream, short) override {
        first = stream.ReadRef();
        second = stream.ReadRef();
    }
    void Write(SerializingOutputStream& stream) const override {
        stream.WriteRef(first);
        stream.WriteRef(second);
    }
};

namespace {

// No ISerializable, though it can be registered.
class Plain : public virtual KelUnknown {};

class Unregistered : public SampleObject {};

class ExampleFactory : public SampleFactory {
public:
    explicit ExampleFactory(bool share = false) {
        RegisterType<A>();
        RegisterType<B>(share);
        RegisterType<Plain>();
    }
};

struct Ender {
    ~Ender() { SampleObject::EndAll(); }
};

// What a case needs, declared before any object on the stack: when the streams are gone it ends all objects.
struct Case {
    explicit Case(bool share = false) : factory(share), out(factory, memory) {}

    Ender ender;
    ExampleFactory factory;
    MemoryOutputStream memory;
    SerializingOutputStream out;
};

// Objects to read from given bytes, or from what a case has written.
struct Source {
    Source(Case& test, std::string bytes) : stored(std::move(bytes)), memory(stored), in(test.factory, memory) {}
    explicit Source(Case& test) : Source(test, test.memory.GetContent()) {}
    Source(const Source&) = delete;

    const std::string stored;
    MemoryInputStream memory;
    SerializingInputStream in;
};

std::string Reference(std::uint32_t number) {
    return Word(0) + Word(0x80190311) + Word(number);
}

std::string BackReference(std::uint32_t number) {
    return Word(0) + Word(0x96190311) + Word(number);
}

std::string ObjectB(int value, short version = 3) {
    const std::string stored(reinterpret_cast<const char*>(&version), sizeof version);
    return Word(0x42) + stored + Word(static_cast<std::uint32_t>(value));
}

const std::string kHeadOfA = Word(0x41) + std::string("\1\0", 2);

template <class Type>
Type* Cast(ISerializable* object) {
    return dynamic_cast<Type*>(object);
}

} // namespace

TEST_CASE("the worked example has its bytes, each field in a call of its own, and reads back") {
    Case test;
    auto* a = new A;
    a->first = a->second = new B;
    RecordingSink sink;
    SerializingOutputStream out(test.factory, sink);
    out.Write(*a);
    out << 9;
    out.Flush();
    const std::string bytes = kHeadOfA + Reference(1) + ObjectB(7) + Reference(2) + Word(9);
    CHECK(Hex(sink.Content()) == Hex(bytes + "flush"));
    const std::vector<int> sizes = {4, 2, 4, 4, 4, 4, 2, 4, 4, 4, 4, 4};
    CHECK(std::equal(sizes.begin(), sizes.end(), sink.calls.begin(),
                     [](int size, const std::string& call) { return static_cast<std::size_t>(size) == call.size(); }));
    RecordingSource source(bytes);
    SerializingInputStream in(test.factory, source);
    A* const back = Cast<A>(in.Create());
    int plain = 0;
    in >> plain;
    CHECK((plain == 9 && source.sizes == sizes));
    B* const part = Cast<B>(back->first);
    REQUIRE(part != nullptr);
    CHECK((back->second == part && part->readVersion == 3));
    CHECK((back->Count() == 1 && part->Count() == 1));
}

TEST_CASE("an object that points to itself does so again, by value with a copy in between") {
    Case test;
    auto* node = new SampleNode;
    node->left = node;
    test.out.Write(*node);
    test.out.WriteRef(node);
    Source source(test);
    auto* back = Cast<SampleNode>(source.in.Create());
    auto* inner = Cast<SampleNode>(back->left);
    CHECK((inner != back && inner->left == inner));
    CHECK(source.in.ReadRef() == inner);
}

TEST_CASE("a stream may begin with a reference; it is then numbered from 1, after a null from 0") {
    Case test, other;
    auto* b = new B;
    for (const B* object : {b, b, static_cast<B*>(nullptr)})
        test.out.WriteRef(object);
    CHECK(Hex(test.memory.GetContent()) == Hex(Reference(1) + ObjectB(7) + Reference(2) + Reference(0)));
    Source source(test);
    ISerializable* const first = source.in.ReadRef();
    CHECK((Cast<B>(first) != nullptr && source.in.ReadRef() == first && source.in.ReadRef() == nullptr));

    other.out.WriteRef(nullptr);
    other.out.WriteRef(b);
    CHECK(Hex(other.memory.GetContent()) == Hex(Reference(0) + Reference(1) + ObjectB(7)));
    Source again(other, Reference(0xFFFFFFFF) + Reference(1) + ObjectB(7));
    CHECK((again.in.ReadRef() == nullptr && Cast<B>(again.in.ReadRef()) != nullptr));
}

TEST_CASE("equal objects of a sharing class are stored once, others every time") {
    Case plain, test(true);
    B b, equal, other;
    other.value = 8;
    plain.out.Write(b);
    plain.out.Write(b);
    CHECK(plain.memory.GetContent() == ObjectB(7) + ObjectB(7));

    for (const B* object : {&b, &other, &equal})
        test.out.Write(*object);
    test.out.WriteRef(&equal);
    test.out.WriteRef(&equal);
    const std::string bytes =
        ObjectB(7) + ObjectB(8) + BackReference(0) + Reference(3) + BackReference(0) + Reference(4);
    CHECK(Hex(test.memory.GetContent()) == Hex(bytes));
    B targets[3];
    std::size_t kept = 0;
    {
        Source source(test);
        for (B& target : targets) {
            target.AddRef();
            source.in.Read(target);
            CHECK(target.Count() == 2);
        }
        CHECK((targets[0].value == 7 && targets[1].value == 8 && targets[2].value == 7));
        auto* const copy = Cast<B>(source.in.ReadRef());
        CHECK((copy->value == 7 && copy->Count() == 1));
        CHECK(source.in.ReadRef() == copy);
        kept = SampleObject::Alive().size();
    }
    CHECK(SampleObject::Alive().size() == kept - 2);
}

TEST_CASE("malformed records end in their exceptions") {
    const std::string unexpected = "2: Unexpected object in stream";
    const std::string noReference = "2: Next stream object is not a reference";
    const std::string command = "2: Unknown command in stream";
    const std::string unknown = "2: Reference to unknown object in stream";
    const std::string tooHigh = "5: Object version too high";
    const std::string emptyA = kHeadOfA + Reference(0) + Reference(0);
    const struct {
        std::string what, stored, create, read /* into an object of class B */, readRef;
    } rows[] = {
        {"unknown class", Word(0x43) + "xxxx", unexpected, unexpected, noReference},
        {"version too high", ObjectB(1, 4), tooHigh, tooHigh, noReference},
        {"negative version", ObjectB(1, -32768), "", "", noReference},
        {"other class", emptyA, "", unexpected, noReference},
        {"unknown command", Word(0) + Word(0x80190312) + Word(1), command, command, noReference},
        {"back-reference to nothing", BackReference(0), unknown, unknown, noReference},
        {"back-reference to the last number", BackReference(0xFFFFFFFF), unknown, unknown, noReference},
        {"reference to nothing", Reference(5), command, command, "2: Reference to non-existing object"},
        {"reference to an unknown class", Reference(1) + Word(0x43), command, command, unexpected},
    };
    for (const auto& row : rows) {
        CAPTURE(row.what);
        Case test;
        B target;
        CHECK(Failure([&] { Source(test, row.stored).in.Create(); }) == row.create);
        CHECK(Failure([&] { Source(test, row.stored).in.Read(target); }) == row.read);
        CHECK(Failure([&] { Source(test, row.stored).in.ReadRef(); }) == row.readRef);
    }
}

TEST_CASE(
    "what cannot be stored or created is refused before any byte of it, as is a back-reference to another class") {
    Case test, sharing(true);
    Unregistered object;
    CHECK(Failure([&] { test.out.Write(object); }) == "2: Unexpected object in stream");
    CHECK(Failure([&] { test.out.WriteRef(&object); }) == "2: Unexpected object in stream");
    CHECK(test.memory.GetContent().empty());
    const auto id = static_cast<std::uint32_t>(test.factory.GetClassID(typeid(Plain)));
    CHECK(Failure([&] { Source(test, Word(id) + std::string("\1\0", 2)).in.Create(); }) ==
          "2: Unexpected object in stream");

    SampleCaption caption;
    B target;
    sharing.out.Write(caption);
    Source source(sharing, sharing.memory.GetContent() + BackReference(0));
    source.in.Read(caption);
    CHECK(Failure([&] { source.in.Read(target); }) == "2: Wrong type of object in stream");
}

TEST_CASE("a class is also read under an old name it is registered by, but not into an object") {
    Case test(true);
    test.factory.RegisterType<B>(true, "OldB");
    const std::string old = Word(static_cast<std::uint32_t>(test.factory.GetClassID("OldB"))) + ObjectB(9, 2).substr(4);
    Source source(test, old + BackReference(0) + old);
    B target;
    const B* const first = Cast<B>(source.in.Create());
    REQUIRE(first != nullptr);
    CHECK((first->value == 9 && first->readVersion == 2));
    source.in.Read(target);
    CHECK(target.value == 9);
    CHECK(Failure([&] { source.in.Read(target); }) == "2: Unexpected object in stream");
}

TEST_CASE("objects made by a failing read are gone, those that were complete are whole") {
    Case test;
    const std::string complete = kHeadOfA + Reference(1) + ObjectB(7) + Reference(3) + ObjectB(8);
    for (std::size_t size = 0; size < complete.size(); ++size) {
        CAPTURE(size);
        CHECK(Failure([&] { Source(test, complete.substr(0, size)).in.Create(); }) == kTooShort);
        CHECK(SampleObject::Alive().size() == (size >= 6 + 12 + 10 ? 1 : 0));
        SampleObject::EndAll();
    }
    CHECK(Failure([&] { Source(test, complete).in.Create(); }) == "");
    CHECK(SampleObject::Alive().size() == 3);
}

TEST_CASE("a failing inner stream leaves copies and tables in balance") {
    Case test(true);
    B b;
    A a;
    a.first = a.second = &b;
    int calls = 0;
    for (std::string failure = "99: "; failure == "99: ";) {
        RecordingSink sink;
        sink.failAt = ++calls;
        failure = Failure([&] {
            SerializingOutputStream out(test.factory, sink);
            out.Write(a);
            out.Write(b);
            out.Flush();
        });
        CHECK(SampleObject::Alive().size() == 2);
    }
    CHECK(calls == 11 + 3 + 1 + 1);
}
