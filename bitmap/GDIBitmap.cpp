#include "bitmap/DibLayout.h"
#include "bitmap/ImageRecord.h"
#include "bitmap/PlatformDrawing.h"
#include "bitmap/Rectangles.h"

#include <cstring>
#include <new>
#include <utility>

GDIBitmap::GDIBitmap() : m_pImage(new Image) {}

// The copy has a count of its own, which starts at 1. NOLINTNEXTLINE(bugprone-copy-constructor-init)
GDIBitmap::GDIBitmap(const GDIBitmap& other)
    : IUnknown(), IBitmapData(), KelUnknown(), BitmapBase(), m_pImage(other.m_pImage) {
    ++m_pImage->refCount;
}

GDIBitmap::GDIBitmap(HBITMAP bitmap) : GDIBitmap() {
    CopyOf(bitmap, nullptr);
}

GDIBitmap::GDIBitmap(HBITMAP bitmap, const Rect& part) : GDIBitmap() {
    CopyOf(bitmap, &part);
}

GDIBitmap::~GDIBitmap() {
    m_pImage->Release();
}

const GDIBitmap& GDIBitmap::operator=(const GDIBitmap& other) {
    Share(other.m_pImage);
    return *this;
}

const GDIBitmap& GDIBitmap::operator=(HBITMAP bitmap) {
    return *this = GDIBitmap(bitmap);
}

bool GDIBitmap::operator==(const GDIBitmap& other) const {
    return m_pImage == other.m_pImage;
}

bool GDIBitmap::operator!=(const GDIBitmap& other) const {
    return !(*this == other);
}

// Raised before the old one is released, so that sharing the own picture is harmless.
void GDIBitmap::Share(Image* image) {
    ++image->refCount;
    m_pImage->Release();
    m_pImage = image;
}

void GDIBitmap::TakeEmpty() {
    Image* const empty = new Image;
    m_pImage->Release();
    m_pImage = empty;
}

void GDIBitmap::CopyOf(HBITMAP bitmap, const Rect* part) {
    BITMAP description = {};
    if (!kel::Describe(bitmap, description))
        return;
    Rect source(0, 0, description.bmWidth, description.bmHeight);
    if (part)
        source = kel::Intersection(*part, source);
    const Rect target(0, 0, source.right - source.left, source.bottom - source.top);
    GDIBitmap copy;
    if (!copy.CreateBitmap(Size(target.right, target.bottom), description.bmBitsPixel))
        return;
    Image& image = *copy.m_pImage;
    kel::MemoryContext context;
    if (context.Select(image.handle) && image.TakeTable(bitmap) && image.FollowTable(context.Get()) &&
        HBitmapSrc(bitmap, SRCCOPY).Blt(context.Get(), source, target))
        Share(&image);
}

int GDIBitmap::GetBitsPerPixel() const {
    return m_pImage->info ? m_pImage->Depth() : 0;
}

const BITMAPINFO* GDIBitmap::GetBitmapInfo() const {
    return m_pImage->info;
}

const char* GDIBitmap::GetBitmapBits() const {
    return static_cast<const char*>(m_pImage->bits);
}

IBitmap* GDIBitmap::GetClone() const {
    return new (std::nothrow) GDIBitmap(*this);
}

void GDIBitmap::SetEmpty() {
    if (!IsEmpty())
        TakeEmpty();
}

bool GDIBitmap::IsEmpty() const {
    return !m_pImage->handle;
}

bool GDIBitmap::CreateBitmap(const Size& size, int bits) {
    return MakeNew(size, bits, /*deviceDependent*/ false);
}

bool GDIBitmap::CreateSysBitmap(const Size& size, int bits) {
    return MakeNew(size, bits, /*deviceDependent*/ true);
}

namespace {

constexpr int kDeepest = 32;

// In the display's own format the system decides.
bool CanBeHeld(const Size& size, int bits) {
    if (bits <= 0)
        return size.cx > 0 && size.cy > 0;
    return bits <= kDeepest && kel::PixelsFit(size.cx, size.cy, bits);
}

} // namespace

bool GDIBitmap::MakeNew(const Size& size, int bits, bool deviceDependent) {
    SetEmpty();
    if (!Detach() || !CanBeHeld(size, bits) || !m_pImage->Describe(size, bits))
        return false;
    if (m_pImage->MakeHandle(deviceDependent))
        return true;
    TakeEmpty();
    return false;
}

bool GDIBitmap::IsEqual(const IBitmap& other) const {
    const auto* const bitmap = dynamic_cast<const GDIBitmap*>(&other);
    return bitmap && *this == *bitmap;
}

bool GDIBitmap::AssignBitmap(const IBitmap& source) {
    if (const auto* const bitmap = dynamic_cast<const GDIBitmap*>(&source)) {
        Share(bitmap->m_pImage);
        return true;
    }
    GDIBitmap copy;
    if (!copy.CreateBitmap(source.GetDimension(), source.GetBitsPerPixel()))
        return false;
    const bool copied = copy.m_pImage->CopyFrom(source);
    Share(copy.m_pImage);
    return copied;
}

Size GDIBitmap::GetDimension() const {
    return m_pImage->info ? m_pImage->Dimension() : Size();
}

const void* GDIBitmap::LockSurface() const {
    return m_pImage->bits;
}

void* GDIBitmap::LockSurfaceModify() {
    return Detach() ? m_pImage->bits : nullptr;
}

void GDIBitmap::UnlockSurface() const {}

bool GDIBitmap::HasPalette() const {
    return GetNumPaletteEntries() > 0;
}

int GDIBitmap::GetNumPaletteEntries() const {
    return IsEmpty() ? 0 : static_cast<int>(m_pImage->TableSize());
}

const RGBQUAD* GDIBitmap::LockPalette() const {
    return IsEmpty() ? nullptr : m_pImage->Table();
}

RGBQUAD* GDIBitmap::LockPaletteModify() {
    return Detach() && !IsEmpty() ? m_pImage->Table() : nullptr;
}

void GDIBitmap::UnlockPalette() const {}

bool GDIBitmap::Detach() {
    if (m_pImage->refCount <= 1)
        return true;
    if (IsEmpty() || m_pImage->bits)
        return DetachPixels();
    GDIBitmap copy;
    if (m_pImage->screenCompatible)
        copy.CreateBitmap(*this, GetDimension(), 0, BM_Stretch, XSize<double>(1.0, 1.0), 0);
    else
        copy = m_pImage->handle;
    Share(copy.m_pImage);
    return true;
}

bool GDIBitmap::DetachPixels() {
    const Image& shared = *m_pImage;
    TakeEmpty();
    if (!shared.handle)
        return true;
    if (!CreateBitmap(shared.Dimension(), shared.Depth()))
        return false;
    std::memcpy(m_pImage->bits, shared.bits, shared.PixelBytes());
    std::memcpy(m_pImage->Table(), shared.Table(), shared.TableSize() * sizeof(RGBQUAD));
    return true;
}

HBITMAP GDIBitmap::GetHandle(bool exclusive) {
    if (exclusive && m_pImage->handle)
        Detach();
    m_pImage->FollowTable();
    return m_pImage->handle;
}

void GDIBitmap::AttachBitmap(HBITMAP bitmap) {
    SetEmpty();
    Detach();
    BITMAP description = {};
    if (kel::Describe(bitmap, description) &&
        m_pImage->Describe(Size(description.bmWidth, description.bmHeight), description.bmBitsPixel))
        m_pImage->handle = bitmap;
}

HBITMAP GDIBitmap::DetachBitmap() {
    if (m_pImage->refCount > 1)
        return nullptr;
    const GDIBitmap empty; // first: without memory for it the bitmap stays
    m_pImage->FollowTable();
    const HBITMAP bitmap = std::exchange(m_pImage->handle, nullptr);
    Share(empty.m_pImage);
    return bitmap;
}

bool GDIBitmap::ConvertSysBitmap2DIB() {
    if (IsEmpty() || m_pImage->bits)
        return true;
    // The recorded depth of the display's own format is 0; the bitmap knows.
    BITMAP description = {};
    if (!kel::Describe(m_pImage->handle, description))
        return false;
    const int depth = m_pImage->screenCompatible ? description.bmBitsPixel : GetBitsPerPixel();
    GDIBitmap copy;
    if (!copy.CreateBitmap(GetDimension(), depth))
        return false;
    const kel::MemoryContext context;
    if (!copy.m_pImage->FetchFrom(context.Get(), m_pImage->handle))
        return false;
    Share(copy.m_pImage);
    return true;
}

void* GDIBitmap::GetDibClone() const {
    if (IsEmpty())
        return nullptr;
    if (m_pImage->screenCompatible) {
        GDIBitmap copy(*this);
        return copy.ConvertSysBitmap2DIB() ? copy.GetDibClone() : nullptr;
    }
    const std::size_t infoBytes = sizeof(BITMAPINFOHEADER) + m_pImage->TableSize() * sizeof(RGBQUAD);
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, infoBytes + m_pImage->PixelBytes());
    if (!block)
        return nullptr;
    auto* const dib = static_cast<char*>(GlobalLock(block));
    bool written = false;
    if (dib) {
        std::memcpy(dib, m_pImage->info, infoBytes);
        written = m_pImage->WriteRows(reinterpret_cast<BITMAPINFO*>(dib), dib + infoBytes);
        GlobalUnlock(block);
    }
    if (written)
        return block;
    GlobalFree(block);
    return nullptr;
}
