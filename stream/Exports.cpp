// Inline members are symbols of the library only where something calls them. A client may want any of them by name, so
// this source, which is compiled without inlining, calls each.

#include <kelcore/stream.h>

namespace {

struct Sink : OutputStream {
    void Write(const char*, int) override {}
};

struct Source : InputStream {
    void Read(char*, int) override {}
};

template <class Stream>
void Copy(Stream& stream) {
    Stream copy(stream);
    copy = stream;
}

template <class Value>
void Exchange(OutputStream& out, InputStream& in) {
    Value value{};
    out << value;
    in >> value;
}

template <class... Values>
void ExchangeAll(OutputStream& out, InputStream& in) {
    (Exchange<Values>(out, in), ...);
}

void CallEndPoints() {
    MemoryOutputStream out;
    Copy(out);
    out.Write("", 0);
    MemoryInputStream in("", 0);
    Copy(in);
    in.Read(nullptr, 0);
}

void CallLayers(OutputStream& out, InputStream& in) {
    CRCOutputStream blocks(out);
    CRCInputStream checked(in);
    CryptingOutputStream scrambled(out);
    Copy(scrambled);
    CryptingInputStream unscrambled(in);
    Copy(unscrambled);
}

} // namespace

namespace kel {

[[gnu::used]] void CallInlineMembers() {
    Sink out;
    Copy(out);
    Source in;
    Copy(in);
    ExchangeAll<bool, char, unsigned char, short, unsigned short, int, long, unsigned int, unsigned long, float, double,
                __int64, NarrowString>(out, in);
    out << "" << WideString();
    CallEndPoints();
    CallLayers(out, in);
    const StreamBase::Exception failure(0, WideString());
    StreamBase::Exception copy(failure);
    copy = failure;
}

} // namespace kel
