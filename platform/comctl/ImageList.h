#pragma once

/// @file
/// Image lists: strips of images side by side, kept in bitmaps and drawn by the calls that every program has.

#include <kelcore/platform/blits.h>
#include <kelcore/platform/imagelists.h>

#include <array>
#include <memory>
#include <vector>

namespace kel::platform {

struct BitmapDeleter {
    void operator()(HBITMAP bitmap) const { DeleteObject(bitmap); }
};
using OwnedBitmap = std::unique_ptr<HBITMAP__, BitmapDeleter>;

/// A DIB section; a table of the usual colours where it needs one. @param bits if not null, receives where the bottom
/// row lies. @return null on failure.
OwnedBitmap MakeSection(SIZE size, int depth, void** bits = nullptr);

/// A memory context with a bitmap in it for as long as it lives.
class BitmapContext {
public:
    explicit BitmapContext(HBITMAP bitmap)
        : m_dc(CreateCompatibleDC(nullptr)), m_ready(m_dc && bitmap && SelectObject(m_dc, bitmap)) {}
    BitmapContext(const BitmapContext&) = delete;
    BitmapContext& operator=(const BitmapContext&) = delete;
    ~BitmapContext() {
        if (m_dc)
            DeleteDC(m_dc);
    }

    bool Ready() const { return m_ready; }
    HDC Dc() const { return m_dc; }

private:
    const HDC m_dc;
    const bool m_ready;
};

/// Changes fail as a whole: on failure, with the last error set, the list is what it was.
class ImageList {
public:
    static constexpr int kOverlays = 15;

    /// @param flags ILC_ values. Without room.
    ImageList(SIZE size, UINT flags, int grow);

    SIZE Size() const { return m_size; }
    UINT Flags() const { return m_flags; }
    int Grow() const { return m_grow; }
    int Count() const { return m_count; }
    bool Has(int index) const { return index >= 0 && index < m_count; }
    bool HasMasks() const { return (m_flags & ILC_MASK) != 0; }
    HBITMAP Images() const { return m_images.get(); }
    HBITMAP Masks() const { return m_masks.get(); }
    int Left(int index) const { return index * static_cast<int>(m_size.cx); }

    /// Whether the pixels of an image say how opaque they are.
    bool HasAlpha(int index) const { return m_alpha[static_cast<std::size_t>(index)]; }

    /// Makes room for @p count images.
    bool Reserve(int count);

    /// Drops images, or adds black ones.
    bool SetCount(int count);

    /// Adds the images side by side in @p image. @return the first one's index, -1 on failure.
    int Add(HBITMAP image, HBITMAP mask);

    bool Replace(int index, HBITMAP image, HBITMAP mask);
    bool Remove(int index);
    void Clear(SIZE size);

    /// Takes the images of a list of the same size and flags, not its background and overlays.
    bool CopyFrom(const ImageList& other);

    COLORREF background = CLR_NONE;
    std::array<int, kOverlays + 1> overlays; ///< by number; -1: none

private:
    struct Strips {
        OwnedBitmap images;
        OwnedBitmap masks;
    };

    int Depth() const;
    bool MakeStrips(int room, Strips& strips) const;
    bool Move(int to, int from, int count);
    bool Blacken(int first, int count);
    bool Put(int index, int count, HBITMAP image, HBITMAP mask);
    bool FindAlpha(int first, int count, std::vector<bool>& flags) const;

    SIZE m_size;
    const UINT m_flags;
    const int m_grow;
    int m_count = 0;
    int m_room = 0;
    OwnedBitmap m_images;
    OwnedBitmap m_masks;
    std::vector<bool> m_alpha;
};

/// Draws as ImageList_DrawIndirect describes it, on a list that has the image.
bool Draw(const ImageList& list, const IMAGELISTDRAWPARAMS& wanted);

} // namespace kel::platform
