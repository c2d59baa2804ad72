#include "tests/imaging/Recording.h"

#include "tests/support/recorder/Dib.h"

using namespace kel::test;
using kel::recorder::PackedDib;

namespace {

std::string Word(std::size_t value) {
    std::string bytes;
    for (int i = 0; i != 4; ++i)
        bytes += static_cast<char>(value >> (8 * i));
    return bytes;
}

/// A stored picture.
std::string Stored(const std::string& data, int form, const std::string& name = {}) {
    std::string units;
    for (const char letter : name)
        units += {letter, '\0'};
    return Word(data.size()) + static_cast<char>(form) + '\0' + data + Word(units.size()) + units;
}

} // namespace

TEST_CASE("a picture is stored as the toolkit's own file, with its name, and read back") {
    const TempFolder folder;
    Recording recording;
    XPDib picture, read;
    picture.LoadBitmapA(folder.Write("a.pic", "4x3x8"));
    recording->Reset();
    const std::string stored = StoredOf(picture);
    CHECK(recording.Calls() == "85, 477, 456 1, 459 10, 367, 457, 477, 461");
    CHECK(stored == Stored("DIB" + PackedDib(4, 3, 8), 0, "a.pic"));
    ReadStored(read, stored);
    CHECK(recording.Calls() == kStart + ", 477, 511 " + std::to_string(stored.size() - 20) + ", 477");
    CHECK((DibOf(read) == PackedDib(4, 3, 8) && read.GetFilename() == u"a.pic"_w));
    CHECK((picture.Version() == 1 && StoredOf(picture) == stored));
}

TEST_CASE("nothing is stored of an empty picture but a zero") {
    Recording recording;
    XPDib unstarted, started;
    LoadText(started, "4x3x8");
    started.SetEmpty();
    recording.Calls();
    CHECK(StoredOf(unstarted) == Word(0));
    CHECK(recording.Calls() == "");
    CHECK(StoredOf(started) == Word(0));
    CHECK(recording.Calls() == "85");
    ReadStored(started, Word(0));
    CHECK(started.IsEmpty());
}

TEST_CASE("a stored packed bitmap goes to the toolkit undecoded, and copies of the picture that was there stay") {
    const TempFolder folder;
    Recording recording;
    XPDib picture;
    picture.LoadBitmapA(folder.Write("a.pic", "4x3x24"));
    for (const int form : {1, 0x80}) {
        XPDib read(picture);
        recording->Reset();
        ReadStored(read, Stored(PackedDib(5, 6, 4), form, "b"));
        CHECK(recording.Calls() == "85, 85, " + kStart + ", 86 5x6x4");
        CHECK((DibOf(read) == PackedDib(5, 6, 4) && read.GetFilename() == u"b"_w));
        ReadStored(read, Word(0));
        CHECK((read.IsEmpty() && read.GetFilename().empty()));
    }
    CHECK((DibOf(picture) == PackedDib(4, 3, 24) && picture.GetFilename() == u"a.pic"_w));
}

TEST_CASE("a stored picture cut at any byte ends in the stream's exception") {
    const TempFolder folder;
    Recording recording;
    XPDib other;
    other.LoadBitmapA(folder.Write("a.pic", "4x3x24"));
    for (const int form : {0, 1}) {
        const std::string data = (form == 0 ? "DIB" : "") + PackedDib(5, 6, 4);
        const std::string stored = Stored(data, form, "b");
        for (std::size_t size = 0; size != stored.size(); ++size) {
            CAPTURE(size);
            XPDib picture(other);
            REQUIRE(Thrown([&] { ReadStored(picture, stored.substr(0, size)); }) == "S 4: Memory block too short");
            REQUIRE((picture != other && picture.GetFilename().empty()));
            REQUIRE(picture.IsEmpty() == (size < 6 + data.size())); // length, form, data
        }
    }
    CHECK((DibOf(other) == PackedDib(4, 3, 24) && other.GetFilename() == u"a.pic"_w));
}

TEST_CASE("a length that no stream can hold costs no memory") {
    Recording recording;
    for (const std::size_t length : {0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        XPDib picture;
        const std::string thrown = Thrown([&] { ReadStored(picture, Word(length) + std::string(2000, '\1')); });
        CHECK(thrown == (length > 0x7FFFFFFF ? "S 0: ImageXpress failed" : "S 4: Memory block too short"));
    }
}

TEST_CASE("what the toolkit cannot save or load has its own messages") {
    Recording recording;
    XPDib picture;
    const auto restart = [&] {
        recording->Reset();
        LoadText(picture, "4x3x24");
        recording->Reset();
    };
    restart();
    recording->Order(457, 1, S_OK);
    CHECK(Thrown([&] { StoredOf(picture); }) == "S 0: ImagXpress failed");
    CHECK(recording.Calls() == "85, 477, 456 1, 459 10, 367, 457");
    restart();
    recording->OrderStatus(-2);
    CHECK(Thrown([&] { StoredOf(picture); }) == "S 0: ImagXpress failed");
    CHECK(recording.Calls() == "85, 477, 456 1, 459 10, 367, 457, 477");
    restart();
    recording->OrderStatus(7);
    CHECK(Thrown([&] { ReadStored(picture, Stored("4x3x24", 0, "b")); }) == "S 0: ImageXpress failed");
    CHECK(picture.GetFilename().empty());
    for (int nth = 1; nth <= 8; ++nth) {
        restart();
        recording->Order(kel::recorder::kAnyPosition, nth, E_FAIL);
        CHECK(Thrown([&] { StoredOf(picture); }) == "E 80004005");
    }
    for (const int form : {0, 1}) {
        for (int nth = 1; nth <= 6 - 2 * form; ++nth) {
            restart();
            recording->Order(kel::recorder::kAnyPosition, nth, E_FAIL);
            CHECK(Thrown([&] { ReadStored(picture, Stored(PackedDib(4, 3, 8), form)); }) == "E 80004005");
        }
    }
}

TEST_CASE("object streams know pictures by their class") {
    struct Factory : ObjectFactory {
        Factory() { RegisterType<XPDib>(); }
    };
    Recording recording;
    const Factory factory;
    MemoryOutputStream memory;
    {
        XPDib picture;
        SerializingOutputStream stream(factory, memory);
        stream.Write(picture);
    }
    // The identifier of the class stands in the record in front of its version.
    CHECK(memory.GetContent().find(std::string("\x75\x1E", 2)) != std::string::npos);
    const std::string stored = memory.GetContent();
    MemoryInputStream source(stored);
    SerializingInputStream stream(factory, source);
    ISerializable* const read = stream.Create();
    CHECK(dynamic_cast<XPDib*>(read) != nullptr);
    read->Release();
}
