#include "platform/comctl/ImageList.h"

#include "platform/gdi/Colours.h"
#include "platform/kernel/LastError.h"

#include <algorithm>
#include <cstdint>

namespace kel::platform {
namespace {

// Takes out of the target what is set in the source.
constexpr DWORD kMaskOut = 0x00220326;

struct SectionInfo {
    BITMAPINFOHEADER header;
    RGBQUAD table[256];
};

int CountIn(const BITMAP& bitmap, SIZE size) {
    return bitmap.bmWidth / static_cast<int>(size.cx);
}

bool Describe(HBITMAP bitmap, BITMAP& description) {
    return GetObjectA(bitmap, sizeof description, &description) != 0;
}

// A rectangle of a strip, from its left edge; the two strips may be one.
bool CopyPart(HBITMAP to, int toLeft, HBITMAP from, int fromLeft, SIZE size) {
    if (size.cx == 0)
        return true;
    const BitmapContext target(to);
    const BitmapContext other(to == from ? nullptr : from);
    const HDC source = to == from ? target.Dc() : other.Dc();
    return target.Ready() && (to == from || other.Ready()) &&
           BitBlt(target.Dc(), toLeft, 0, size.cx, size.cy, source, fromLeft, 0, SRCCOPY);
}

} // namespace

OwnedBitmap MakeSection(SIZE size, int depth, void** bits) {
    SectionInfo info = {};
    info.header.biSize = sizeof info.header;
    info.header.biWidth = size.cx;
    info.header.biHeight = size.cy;
    info.header.biPlanes = 1;
    info.header.biBitCount = static_cast<WORD>(depth);
    if (depth <= 8)
        std::copy_n(DefaultTable(depth), std::size_t{1} << depth, info.table);
    return OwnedBitmap(
        CreateDIBSection(nullptr, reinterpret_cast<BITMAPINFO*>(&info), DIB_RGB_COLORS, bits, nullptr, 0));
}

ImageList::ImageList(SIZE size, UINT flags, int grow) : m_size(size), m_flags(flags), m_grow(std::max(grow, 1)) {
    overlays.fill(-1);
}

int ImageList::Depth() const {
    const UINT depth = m_flags & ILC_COLORDDB;
    for (const UINT known : {ILC_COLOR8, ILC_COLOR16, ILC_COLOR24, ILC_COLOR32})
        if (depth == known)
            return static_cast<int>(known);
    return depth == ILC_COLORDDB ? 32 : 4;
}

bool ImageList::MakeStrips(int room, Strips& strips) const {
    const std::int64_t width = std::int64_t{room} * m_size.cx;
    if (width > INT32_MAX)
        return Fail(ERROR_NOT_ENOUGH_MEMORY);
    const SIZE size{static_cast<LONG>(width), m_size.cy};
    strips.images = MakeSection(size, Depth());
    if (strips.images && HasMasks())
        strips.masks.reset(CreateBitmap(size.cx, size.cy, 1, 1, nullptr));
    return strips.images && (strips.masks || !HasMasks());
}

bool ImageList::Reserve(int count) {
    if (count <= m_room)
        return true;
    // A list begins with the room that was asked for; later it takes some more, if that can be had.
    const int room = m_room == 0 ? count : std::max(count, m_room + std::min(m_grow, INT32_MAX - m_room));
    const SIZE used{Left(m_count), m_size.cy};
    Strips strips;
    const bool grown = room > count && MakeStrips(room, strips);
    if ((!grown && !MakeStrips(count, strips)) || !CopyPart(strips.images.get(), 0, Images(), 0, used) ||
        (HasMasks() && !CopyPart(strips.masks.get(), 0, Masks(), 0, used)))
        return false;
    m_images = std::move(strips.images);
    m_masks = std::move(strips.masks);
    m_room = grown ? room : count;
    return true;
}

bool ImageList::Move(int to, int from, int count) {
    const SIZE size{Left(count), m_size.cy};
    return CopyPart(Images(), Left(to), Images(), Left(from), size) &&
           (!HasMasks() || CopyPart(Masks(), Left(to), Masks(), Left(from), size));
}

bool ImageList::Blacken(int first, int count) {
    const auto blackened = [&](HBITMAP strip) {
        const BitmapContext context(strip);
        return context.Ready() && PatBlt(context.Dc(), Left(first), 0, Left(count), m_size.cy, BLACKNESS);
    };
    return count == 0 || (blackened(Images()) && (!HasMasks() || blackened(Masks())));
}

bool ImageList::SetCount(int count) {
    if (count > m_count && (!Reserve(count) || !Blacken(m_count, count - m_count)))
        return false;
    m_alpha.resize(static_cast<std::size_t>(count));
    m_count = count;
    return true;
}

bool ImageList::Put(int index, int count, HBITMAP image, HBITMAP mask) {
    const BitmapContext images(Images());
    const BitmapContext source(image);
    const int left = Left(index);
    const int width = Left(count);
    if (!images.Ready() || !source.Ready() ||
        !BitBlt(images.Dc(), left, 0, width, m_size.cy, source.Dc(), 0, 0, SRCCOPY))
        return false;
    if (!HasMasks() || !mask)
        return true;
    const BitmapContext masks(Masks());
    const BitmapContext given(mask);
    return masks.Ready() && given.Ready() && BitBlt(masks.Dc(), left, 0, width, m_size.cy, given.Dc(), 0, 0, SRCCOPY) &&
           BitBlt(images.Dc(), left, 0, width, m_size.cy, masks.Dc(), left, 0, kMaskOut);
}

int ImageList::Add(HBITMAP image, HBITMAP mask) {
    BITMAP description;
    if (!Describe(image, description))
        return -1;
    const int count = CountIn(description, m_size);
    if (count == 0)
        return Fail(ERROR_INVALID_PARAMETER), -1;
    const int first = m_count;
    std::vector<bool> alpha(static_cast<std::size_t>(count)); // nothing below throws once the count is raised
    if (!SetCount(first + count))
        return -1;
    if (!Put(first, count, image, mask) || !FindAlpha(first, count, alpha)) {
        m_alpha.resize(static_cast<std::size_t>(m_count = first));
        return -1;
    }
    std::copy(alpha.begin(), alpha.end(), m_alpha.begin() + first);
    return first;
}

bool ImageList::Replace(int index, HBITMAP image, HBITMAP mask) {
    // A copy at the end is made first, so that a failure changes nothing.
    const int last = m_count;
    std::vector<bool> alpha;
    if (!Reserve(last + 1) || !Blacken(last, 1) || !Put(last, 1, image, mask) || !FindAlpha(last, 1, alpha) ||
        !Move(index, last, 1))
        return false;
    m_alpha[static_cast<std::size_t>(index)] = alpha[0];
    return true;
}

bool ImageList::Remove(int index) {
    if (!Move(index, index + 1, m_count - index - 1))
        return false;
    m_alpha.erase(m_alpha.begin() + index);
    --m_count;
    return true;
}

void ImageList::Clear(SIZE size) {
    m_images.reset();
    m_masks.reset();
    m_alpha.clear();
    m_count = m_room = 0;
    m_size = size;
}

bool ImageList::CopyFrom(const ImageList& other) {
    if (!SetCount(other.m_count))
        return false;
    m_alpha = other.m_alpha;
    const SIZE size{Left(m_count), m_size.cy};
    return CopyPart(Images(), 0, other.Images(), 0, size) &&
           (!HasMasks() || CopyPart(Masks(), 0, other.Masks(), 0, size));
}

// Images of 32 bits have alpha when any pixel has some.
bool ImageList::FindAlpha(int first, int count, std::vector<bool>& flags) const {
    flags.assign(static_cast<std::size_t>(count), false);
    if ((m_flags & ILC_COLORDDB) != ILC_COLOR32)
        return true;
    DIBSECTION section;
    if (!GetObjectA(Images(), sizeof section, &section))
        return false;
    const auto* const pixels = static_cast<const std::uint32_t*>(section.dsBm.bmBits);
    const auto has = [&](int index) {
        for (int y = 0; y < m_size.cy; ++y) {
            const std::uint32_t* const row = pixels + std::ptrdiff_t{y} * section.dsBm.bmWidth + Left(index);
            if (std::any_of(row, row + m_size.cx, [](std::uint32_t pixel) { return pixel >> 24 != 0; }))
                return true;
        }
        return false;
    };
    for (int i = 0; i < count; ++i)
        flags[static_cast<std::size_t>(i)] = has(first + i);
    return true;
}

} // namespace kel::platform
