#pragma once

#include <kelcore/bitmap/geometry.h>
#include <kelcore/platform.h>

/// @file
/// Drawing contexts in memory, and small acts of the system on bitmaps.
namespace kel {

/// A device context in memory, with at most one bitmap selected; it gives the bitmap back and ends itself.
class MemoryContext {
public:
    /// @param like what it is compatible with; null for the screen.
    explicit MemoryContext(HDC like = nullptr);
    MemoryContext(const MemoryContext&) = delete;
    MemoryContext& operator=(const MemoryContext&) = delete;
    ~MemoryContext();

    /// @return false without a context, for a null bitmap, and when the system refuses.
    bool Select(HBITMAP bitmap);

    /// Gives the bitmap back and ends the context before its time.
    void End();

    /// Null when the system had none.
    HDC Get() const { return m_dc; }

private:
    HDC m_dc;
    HGDIOBJ m_previous = nullptr;
};

/// Fills an area with a colour.
/// @return whether the system did.
bool FillOpaque(HDC dc, const Rect& area, unsigned long color);

/// The system's description of a bitmap; false for what is none.
bool Describe(HBITMAP bitmap, BITMAP& description);

/// Whether drawing has to mind the limits of the 95 family.
bool Is95Family();

} // namespace kel
