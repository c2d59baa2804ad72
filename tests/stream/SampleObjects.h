#pragma once

#include <kelcore/stream.h>

#include <set>
#include <string>
#include <tuple>
#include <vector>

/// Classes to store, used by tests and fuzz targets. Their names are in stored files, so they are global.
///
/// Objects that were read point to each other freely, cycles included; whoever reads them ends them all through
/// SampleObject::EndAll.
class SampleObject : public ISerializable, public virtual KelUnknown {
public:
    SampleObject() { Alive().insert(this); }
    SampleObject(const SampleObject& other) : IUnknown(), KelUnknown(other), ISerializable(), version(other.version) {
        Alive().insert(this);
    }
    SampleObject& operator=(const SampleObject&) = default;
    ~SampleObject() override { Alive().erase(this); }

    static std::set<SampleObject*>& Alive() {
        static std::set<SampleObject*> alive;
        return alive;
    }

    static void EndAll() {
        while (!Alive().empty())
            (*Alive().begin())->Destroy();
    }

    unsigned Count() { return AddRef(), Release(); }

    short version = 1;

    short Version() const override { return version; }
    void Read(SerializingInputStream&, short) override {}
    void Write(SerializingOutputStream&) const override {}
};

/// One of each typed value; version 2 added the wide text.
class SampleValues : public SampleObject {
public:
    SampleValues() { version = 2; }

    std::tuple<bool, char, unsigned char, short, unsigned short, int, unsigned, long, unsigned long, float, double,
               __int64, NarrowString>
        values;
    WideString title;

    void Read(SerializingInputStream& stream, short stored) override {
        std::apply([&](auto&... value) { (stream >> ... >> value); }, values);
        title = WideString();
        if (stored >= 2)
            stream >> title;
        version = stored;
    }
    void Write(SerializingOutputStream& stream) const override {
        std::apply([&](const auto&... value) { (stream << ... << value); }, values);
        if (version >= 2)
            stream << title;
    }
};

/// A node of a graph.
class SampleNode : public SampleObject {
public:
    ISerializable* left = nullptr;
    ISerializable* right = nullptr;
    int number = 0;
    NarrowString text;

    void Read(SerializingInputStream& stream, short) override {
        left = stream.ReadRef();
        right = stream.ReadRef();
        stream >> number >> text;
    }
    void Write(SerializingOutputStream& stream) const override {
        stream.WriteRef(left);
        stream.WriteRef(right);
        stream << number << text;
    }
};

/// Equal captions are stored once.
class SampleCaption : public SampleObject {
public:
    NarrowString text;

    bool operator==(const SampleCaption& other) const { return text == other.text; }
    void Read(SerializingInputStream& stream, short) override { stream >> text; }
    void Write(SerializingOutputStream& stream) const override { stream << text; }
};

/// Holds a caption by value and any number of pointers; their count comes from the stream.
class SampleGroup : public SampleObject {
public:
    SampleCaption caption;
    std::vector<ISerializable*> members;

    void Read(SerializingInputStream& stream, short) override {
        stream.Read(caption);
        unsigned short count = 0;
        stream >> count;
        members.clear();
        for (; count > 0; --count)
            members.push_back(stream.ReadRef());
    }
    void Write(SerializingOutputStream& stream) const override {
        stream.Write(caption);
        stream << static_cast<unsigned short>(members.size());
        for (const ISerializable* member : members)
            stream.WriteRef(member);
    }
};

/// A factory that knows the classes above; it lives on the stack.
class SampleFactory : public ObjectFactory {
public:
    SampleFactory() {
        RegisterType<SampleValues>();
        RegisterType<SampleNode>();
        RegisterType<SampleCaption>(/*shareEqualObjects*/ true);
        RegisterType<SampleGroup>();
    }
};
