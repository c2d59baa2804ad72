#pragma once

#include "Owned.h"
#include "Report.h"

#include <kelcore/picture.h>
#include <kelcore/stream.h>

#include <functional>
#include <vector>

/// The classes of an album's object graph. A file of checksummed blocks holds an Album by value and then its entries by
/// value, in their order. An Entry refers to a Picture; entries with the same picture refer to one Picture, which is
/// stored with the first of them. docs/formats/album.md tells what the bytes mean.
///
/// Albums may be larger than memory: they are written and read entry by entry, and pictures are let go on the way.
namespace kelalbum {

using namespace kelexamples;

/// A picture as an album keeps it: what the object stream makes of an XPDib, which becomes one when it is asked for.
/// Who lists or copies an album decodes nothing.
class StoredPicture : public ISerializable, public virtual KelUnknown {
public:
    StoredPicture() = default;
    /// Stores @p picture.
    /// @throws StreamBase::Exception, _com_error if the toolkit cannot save it.
    explicit StoredPicture(const XPDib& picture);

    void Read(SerializingInputStream& stream, short version) override;
    void Write(SerializingOutputStream& stream) const override;
    short Version() const override { return 1; }

    /// Makes the picture; an empty one after Drop.
    /// @throws StreamBase::Exception, _com_error if it cannot be decoded.
    XPDib Decode() const;
    /// How many bytes it takes in the album, also after Drop.
    unsigned long long Bytes() const { return m_size; }
    /// Lets the bytes go.
    void Drop();

private:
    NarrowString m_bytes;
    unsigned long long m_size = 0;
};

/// What entries share.
class Picture : public ISerializable, public virtual KelUnknown {
public:
    /// The longest side of a thumbnail.
    static constexpr int kThumbnailSide = 256;

    Picture() = default;
    /// Stores @p picture, with its measures and a thumbnail, which is what @p picture itself becomes: a large one is
    /// not copied.
    /// @throws Failure if the system does not show its pixels; as StoredPicture.
    explicit Picture(XPDib&& picture);

    void Read(SerializingInputStream& stream, short version) override;
    void Write(SerializingOutputStream& stream) const override;
    short Version() const override { return 1; }

    /// Width and height in pixels.
    Size size;
    /// Bits per pixel, as loaded.
    int depth = 0;
    /// The picture on a small scale, its aspect kept; as it is if it is hardly larger than that.
    StoredPicture thumbnail;
    StoredPicture whole;
    /// Which of the album's pictures this is, counted from 0 by who reads the album; below 0 outside of that.
    int number = -1;
};

/// A place in the album.
class Entry : public ISerializable, public virtual KelUnknown {
public:
    void Read(SerializingInputStream& stream, short version) override;
    void Write(SerializingOutputStream& stream) const override;
    short Version() const override { return 1; }

    /// The file's name without its folder, unlike that of every other entry.
    WideString name;
    /// The full path of the file that it came from.
    WideString origin;
    /// Belongs to whoever reads or makes the album.
    Picture* picture = nullptr;
    /// Whether an entry before this one has the same picture.
    bool repeated = false;

    /// Decode a picture; empty if it was let go.
    /// @throws Failure if it cannot be decoded.
    XPDib Thumbnail() const;
    XPDib Whole() const;
};

/// The first object of the file, by which an album is known.
class Album : public ISerializable, public virtual KelUnknown {
public:
    void Read(SerializingInputStream&, short) override {}
    void Write(SerializingOutputStream&) const override {}
    short Version() const override { return 1; }
};

/// The registry of the classes above.
const IObjectFactory& Classes();

/// Which pictures stay in memory after their entries have been looked at, for entries that repeat them.
enum class Keep { Nothing, Thumbnails, Everything };

/// Reads the album at @p path, every block of it, and shows @p verb on a terminal meanwhile. Hands each entry to
/// @p visit when it is read. Thumbnail and whole picture can be decoded there; of an entry that repeats a picture only
/// what is kept.
/// @throws Failure if anything is wrong with the album, and what @p visit throws.
void ReadAlbum(const WideString& path, const char* verb, const std::function<void(const Entry&)>& visit,
               Keep keep = Keep::Nothing);

} // namespace kelalbum
