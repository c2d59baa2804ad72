#include "Album.h"

#include "BlockFile.h"
#include "PlainName.h"
#include "Progress.h"

#include <algorithm>

namespace kelalbum {
namespace {

// A picture that a thumbnail would not make smaller by a tenth of its pixels is its own thumbnail.
constexpr double kThumbnailLimit = 0.9;

/// Owns the pictures of the album that it reads: entries refer to them.
class AlbumReader : public SerializingInputStream {
public:
    explicit AlbumReader(InputStream& inner) : SerializingInputStream(Classes(), inner) {}

    void Take(Picture* picture) {
        picture->number = static_cast<int>(m_pictures.size());
        m_pictures.emplace_back(picture);
    }

private:
    std::vector<Owned<Picture>> m_pictures;
};

// A thin picture would be scaled down to nothing.
bool IsThin(const Size& size) {
    return 2 * std::min(size.cx, size.cy) * Picture::kThumbnailSide < std::max(size.cx, size.cy);
}

Size ThinThumbnail(const Size& size) {
    const auto side = [](auto length) { return std::clamp<decltype(length)>(length, 1, Picture::kThumbnailSide); };
    return {side(size.cx), side(size.cy)};
}

void MakeThumbnail(XPDib& picture, const Size& size) {
    if (IsThin(size))
        picture.Resample(ThinThumbnail(size));
    else
        picture.Prescale(Rect(0, 0, Picture::kThumbnailSide, Picture::kThumbnailSide), IBitmap::BM_Fit,
                         XSize<double>(1.0, 1.0), kThumbnailLimit);
}

[[noreturn]] void FailMisplaced() {
    throw Failure{"the album holds an object in a place where none of its kind belongs"};
}

std::string Reason(const StreamBase::Exception& error) {
    return FirstLine(error.message);
}

std::string Reason(const _com_error& error) {
    return SystemText(static_cast<unsigned long>(error.Error()));
}

XPDib DecodeFor(const WideString& name, const StoredPicture& picture) {
    const auto fail = [&](const auto& error) {
        throw Failure{Shown(name) + ": its picture cannot be decoded: " + Reason(error)};
    };
    try {
        return picture.Decode();
    } catch (const StreamBase::Exception& error) {
        fail(error);
    } catch (const _com_error& error) {
        fail(error);
    }
    return XPDib();
}

void Drop(Picture& picture, Keep keep) {
    if (keep != Keep::Everything)
        picture.whole.Drop();
    if (keep == Keep::Nothing)
        picture.thumbnail.Drop();
}

} // namespace

StoredPicture::StoredPicture(const XPDib& picture) {
    MemoryOutputStream memory;
    SerializingOutputStream(Classes(), memory).Write(picture);
    m_bytes = memory.GetContent();
    m_size = m_bytes.size();
}

void StoredPicture::Read(SerializingInputStream& stream, short) {
    stream >> m_bytes;
    m_size = m_bytes.size();
}

void StoredPicture::Write(SerializingOutputStream& stream) const {
    stream << m_bytes;
}

XPDib StoredPicture::Decode() const {
    XPDib picture;
    if (m_bytes.empty())
        return picture;
    MemoryInputStream memory(m_bytes);
    SerializingInputStream(Classes(), memory).Read(picture);
    return picture;
}

void StoredPicture::Drop() {
    m_bytes = NarrowString();
}

Picture::Picture(XPDib&& picture) : size(picture.GetDimension()), depth(picture.GetBitsPerPixel()), whole(picture) {
    // A picture whose memory the system does not show tells no measures.
    if (size.cx == 0 || size.cy == 0 || depth == 0)
        throw Failure{"its pixels cannot be read"};
    MakeThumbnail(picture, size);
    thumbnail = StoredPicture(picture);
}

void Picture::Read(SerializingInputStream& stream, short) {
    stream >> size.cx >> size.cy >> depth;
    stream.Read(thumbnail);
    stream.Read(whole);
}

void Picture::Write(SerializingOutputStream& stream) const {
    stream << size.cx << size.cy << depth;
    stream.Write(thumbnail);
    stream.Write(whole);
}

void Entry::Read(SerializingInputStream& stream, short) {
    stream >> name >> origin;
    if (!IsPlainName(name))
        throw Failure{"the album holds the name \"" + Shown(name) + "\", which no file can have"};
    ISerializable* const object = stream.ReadRef();
    picture = dynamic_cast<Picture*>(object);
    if (picture == nullptr) {
        if (object != nullptr)
            object->Release();
        FailMisplaced();
    }
    repeated = picture->number >= 0;
    // Only albums' readers read entries. A second reference to a picture carries no ownership.
    if (!repeated)
        dynamic_cast<AlbumReader&>(stream).Take(picture);
}

void Entry::Write(SerializingOutputStream& stream) const {
    stream << name << origin;
    stream.WriteRef(picture);
}

XPDib Entry::Thumbnail() const {
    return DecodeFor(name, picture->thumbnail);
}

XPDib Entry::Whole() const {
    return DecodeFor(name, picture->whole);
}

const IObjectFactory& Classes() {
    static const Owned<ObjectFactory> classes = [] {
        Owned<ObjectFactory> factory(new ObjectFactory);
        factory->RegisterType<Album>();
        factory->RegisterType<Entry>();
        factory->RegisterType<Picture>();
        factory->RegisterType<StoredPicture>();
        factory->RegisterType<XPDib>();
        return factory;
    }();
    return *classes;
}

void ReadAlbum(const WideString& path, const char* verb, const std::function<void(const Entry&)>& visit, Keep keep) {
    BlockFileInput input(path, "album");
    Progress progress(verb);
    progress.Expect(input.Size());
    try {
        AlbumReader reader(input.Stream());
        Album album;
        reader.Read(album);
        for (bool more = false; reader >> more, more;) {
            Entry entry;
            reader.Read(entry);
            progress.Reach(input.Taken());
            visit(entry);
            Drop(*entry.picture, keep);
        }
    } catch (const StreamBase::Exception& error) {
        throw Failure{input.Describe(error)};
    }
    input.ExpectEnd();
}

} // namespace kelalbum
