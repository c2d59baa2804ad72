#include "platform/gdi/DibFormat.h"
#include "platform/gdi/PixelCopy.h"
#include "platform/kernel/Faults.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace kel::platform {
namespace {

HBITMAP Add(std::shared_ptr<BitmapObject> bitmap) {
    return static_cast<HBITMAP>(AddObject(std::move(bitmap)));
}

HBITMAP MakeEmpty(int width, int height, PixelFormat format) {
    return WithMemory(HBITMAP(), [&] { return Add(MakeDeviceBitmap(width, height, format)); });
}

// Beyond these a size is a wrong argument; up to them it is a matter of memory.
bool IsThinkable(int width, int height, PixelFormat format) {
    constexpr int kWidest = 0x7FFFFFF;
    const std::int64_t rowBytes = WordRowBytes(std::int64_t{width} * BitsPerPixel(format));
    return width <= kWidest && rowBytes <= std::numeric_limits<std::uint32_t>::max() / height;
}

// A negative size counts as positive. @return false for one that cannot be.
bool Normalise(int& width, int& height, PixelFormat& format) {
    constexpr int kLeast = std::numeric_limits<int>::min();
    if (width == 0 || height == 0) {
        width = height = 1;
        format = PixelFormat::Mono;
    }
    if (width == kLeast || height == kLeast)
        return Fail(ERROR_INVALID_PARAMETER);
    width = std::abs(width);
    height = std::abs(height);
    return IsThinkable(width, height, format) || Fail(ERROR_INVALID_PARAMETER);
}

HBITMAP MakeFilled(int width, int height, PixelFormat format, const void* bits) {
    return WithMemory(HBITMAP(), [&] {
        auto bitmap = MakeDeviceBitmap(width, height, format);
        const auto rowBytes = static_cast<std::size_t>(bitmap->VisibleRowBytes());
        for (std::size_t y = 0; y < static_cast<std::size_t>(height); ++y)
            std::memcpy(bitmap->Memory() + y * static_cast<std::size_t>(bitmap->RowBytes()),
                        static_cast<const std::uint8_t*>(bits) + y * rowBytes, rowBytes);
        return Add(std::move(bitmap));
    });
}

HBITMAP MakeBitmap(int width, int height, UINT planes, UINT depth, const void* bits) {
    PixelFormat format;
    if (planes != 1 || !FormatOfBits(depth, format))
        return Fail(ERROR_INVALID_PARAMETER), nullptr;
    if (!Normalise(width, height, format))
        return nullptr;
    return bits ? MakeFilled(width, height, format, bits) : MakeEmpty(width, height, format);
}

HBITMAP MakeSection(BitmapLayout layout, void** bits) {
    return WithMemory(HBITMAP(), [&] {
        layout.section = true;
        auto bitmap = std::make_shared<BitmapObject>(std::move(layout));
        std::uint8_t* const memory = bitmap->Memory();
        const HBITMAP handle = Add(std::move(bitmap));
        if (bits && handle)
            *bits = memory;
        return handle;
    });
}

HBITMAP MakeSection(const BITMAPINFO& info, UINT usage, const DeviceContext* context, void** bits) {
    DibFormat format;
    if (!ReadDibFormat(info, usage, context, format))
        return nullptr;
    // The table of a section has an entry for every index.
    if (IsIndexed(format.format))
        format.table.resize(std::size_t{1} << BitsPerPixel(format.format));
    return MakeSection({format.width, format.height, format.format, /*section*/ true, format.topDown, format.bitFields,
                        std::move(format.table)},
                       bits);
}

HBITMAP MakeCompatible(const DeviceContext& context, int width, int height) {
    PixelFormat format = context.Target().format;
    if (width == 0 || height == 0 || !context.IsMemory() || !context.State().bitmap->IsSection())
        return Normalise(width, height, format) ? MakeEmpty(width, height, format) : nullptr;
    if (!Normalise(width, height, format))
        return nullptr;
    BitmapLayout layout = context.State().bitmap->Layout();
    layout.width = width;
    layout.height = height;
    layout.topDown = false;
    return MakeSection(std::move(layout), /*bits*/ nullptr);
}

// What is drawn from a DIB goes into the bitmap's top left corner.
bool Fill(HBITMAP handle, const void* bits, const BITMAPINFO& info, UINT usage, const DeviceContext* context) {
    DibFormat format;
    const auto bitmap = FindObject<BitmapObject>(handle);
    if (!bitmap || !ReadDibFormat(info, usage, context, format))
        return false;
    CopyPixels(bitmap->Pixels(), format.At(bits));
    return true;
}

HBITMAP MakeFromDib(HDC dc, const BITMAPINFOHEADER& header, const void* bits, const BITMAPINFO* info, UINT usage) {
    const auto context = dc ? FindContext(dc) : nullptr;
    if (dc && !context)
        return nullptr;
    PixelFormat format = context ? context->Target().format : PixelFormat::Mono;
    int width = header.biWidth;
    int height = header.biHeight;
    if (width < 0 || !Normalise(width, height, format))
        return Fail(ERROR_INVALID_PARAMETER), nullptr;
    const HBITMAP bitmap = MakeEmpty(width, height, format);
    if (bitmap && info && bits && !WithMemory(false, [&] { return Fill(bitmap, bits, *info, usage, context.get()); })) {
        RemoveObject(*FindAnyObject(bitmap));
        return nullptr;
    }
    return bitmap;
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

HBITMAP WINAPI CreateBitmap(int width, int height, UINT planes, UINT depth, const void* bits) {
    return CallFails("CreateBitmap") ? nullptr : MakeBitmap(width, height, planes, depth, bits);
}

HBITMAP WINAPI CreateBitmapIndirect(const BITMAP* bitmap) {
    if (CallFails("CreateBitmapIndirect"))
        return nullptr;
    if (!bitmap || bitmap->bmType != 0)
        return Fail(ERROR_INVALID_PARAMETER), nullptr;
    return MakeBitmap(bitmap->bmWidth, bitmap->bmHeight, bitmap->bmPlanes, bitmap->bmBitsPixel, bitmap->bmBits);
}

HBITMAP WINAPI CreateCompatibleBitmap(HDC dc, int width, int height) {
    if (CallFails("CreateCompatibleBitmap"))
        return nullptr;
    const auto context = FindContext(dc);
    return context ? WithMemory(HBITMAP(), [&] { return MakeCompatible(*context, width, height); }) : nullptr;
}

HBITMAP WINAPI CreateDIBSection(HDC dc, const BITMAPINFO* info, UINT usage, void** bits, HANDLE section, DWORD) {
    if (bits)
        *bits = nullptr;
    if (CallFails("CreateDIBSection"))
        return nullptr;
    if (section)
        return Fail(ERROR_NOT_SUPPORTED), nullptr;
    if (!info)
        return Fail(ERROR_INVALID_PARAMETER), nullptr;
    const auto context = usage == DIB_PAL_COLORS && dc ? FindContext(dc) : nullptr;
    return WithMemory(HBITMAP(), [&] { return MakeSection(*info, usage, context.get(), bits); });
}

HBITMAP WINAPI CreateDIBitmap(HDC dc, const BITMAPINFOHEADER* header, DWORD flags, const void* bits,
                              const BITMAPINFO* info, UINT usage) {
    if (CallFails("CreateDIBitmap"))
        return nullptr;
    if (!header)
        return Fail(ERROR_INVALID_PARAMETER), nullptr;
    const bool fills = (flags & CBM_INIT) != 0;
    return MakeFromDib(dc, *header, fills ? bits : nullptr, fills ? info : nullptr, usage);
}
