// A stored picture from foreign bytes. One that reads is a picture like any other: what is stored of it reads as the
// same picture, it can be looked at, changed and drawn. One that does not read leaves no name.

#include <kelcore/picture.h>
#include <kelcore/stream.h>

#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

void Require(bool holds) {
    if (!holds)
        std::abort();
}

const ObjectFactory& NoClasses() {
    static const ObjectFactory factory;
    return factory;
}

void ReadStored(XPDib& picture, const std::string& bytes) {
    MemoryInputStream memory(bytes);
    SerializingInputStream stream(NoClasses(), memory);
    picture.Read(stream, picture.Version());
}

std::string StoredOf(const XPDib& picture) {
    MemoryOutputStream memory;
    SerializingOutputStream stream(NoClasses(), memory);
    picture.Write(stream);
    return memory.GetContent();
}

/// The packed bitmap, to the last byte that its header speaks of.
std::string DibOf(const XPDib& picture) {
    const HGLOBAL block = picture.GetDibClone();
    if (!block)
        return {};
    const std::string bytes(static_cast<const char*>(GlobalLock(block)), GlobalSize(block));
    GlobalUnlock(block);
    GlobalFree(block);
    return bytes;
}

bool Reads(XPDib& picture, const std::string& bytes) {
    try {
        ReadStored(picture, bytes);
        return true;
    } catch (const StreamBase::Exception& failure) {
        Require(failure.code == 0 || failure.code == 4);
    } catch (const _com_error& failure) {
        Require(failure.Error() == E_INVALIDARG);
    }
    Require(picture.GetFilename().empty());
    return false;
}

void Change(XPDib& picture) {
    const Rect target(0, 0, 24, 17);
    Require(picture.Swirl(30) && picture.Negate() && picture.Mosaic(3));
    picture.Prescale(target, IBitmap::BM_Center, XSize<double>(1, 1), 0.9);
    picture.Prescale(target, IBitmap::BM_Fit, XSize<double>(1, 1), 0.9);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    XPDib picture;
    if (!Reads(picture, std::string(reinterpret_cast<const char*>(data), size)) || picture.IsEmpty())
        return 0;
    XPDib again;
    ReadStored(again, StoredOf(picture));
    Require(DibOf(again) == DibOf(picture) && again.GetFilename() == picture.GetFilename());
    const Size whole = picture.GetDimension();
    picture.GetPixel(static_cast<int>(whole.cx) - 1, static_cast<int>(whole.cy) - 1);
    picture.ContainsColor(0);
    Change(again);
    return 0;
}
