#pragma once

/// @file
/// Regions.

#include <kelcore/export.h>
#include <kelcore/platform.h>

/// The owner of a region, in device units. The region is deleted when another one is attached and at the end.
///
/// Copies hold the same region without counting, and assignment does not delete what was held: of two objects that
/// hold one region all but one must Detach it. Nothing throws; members without a comment are the system's calls of the
/// same name, and those that return an int return ERROR, NULLREGION, SIMPLEREGION or COMPLEXREGION.
/// @code
/// Rgn frame(CreateRectRgn(0, 0, 100, 100)), hole;
/// if (hole.CreateEllipticRgn(20, 20, 80, 80))
///     frame.CombineRgn(frame, hole, RGN_DIFF);
/// @endcode
class KELCORE_API Rgn {
public:
    /// Holds nothing.
    Rgn();
    /// Takes @p region over.
    Rgn(HRGN region);
    /// Holds the region of @p other as well.
    Rgn(const Rgn& other);
    virtual ~Rgn();
    /// Holds the region of @p other as well; what was held before is not deleted.
    Rgn& operator=(const Rgn& other);

    /// Destroys what is held and takes @p region over. @return whether it is not null.
    bool Attach(HRGN region);
    /// Deletes the region, if there is one; nothing is held then.
    void Destroy();
    /// Gives the region up without deleting it; it is the caller's now. @return the region, null for none.
    HRGN Detach();
    bool HasHRgn() const;
    /// The region; it stays this object's.
    operator HRGN() const;

    /// @name Creating
    /// What was held is destroyed, whether the new region can be made or not.
    /// @return false when it cannot; nothing is held then.
    /// @{
    bool CreateEllipticRgn(int left, int top, int right, int bottom);
    bool CreateEllipticRgnIndirect(const RECT& rect);
    /// From the path of @p dc, which is used up (`PathToRegion`).
    bool CreateFromPath(HDC dc);
    /// @param fillMode ALTERNATE or WINDING.
    bool CreatePolygonRgn(POINT* points, int count, int fillMode);
    /// @param points of all polygons in turn. @param counts the first of @p polygonCount numbers of points.
    bool CreatePolyPolygonRgn(POINT* points, int& counts, int polygonCount, int fillMode);
    bool CreateRectRgn(int left, int top, int right, int bottom);
    /// `CreateRectRgnIndirect`.
    bool CreateRectRgn(const RECT& rect);
    bool CreateRoundRectRgn(int left, int top, int right, int bottom, int ellipseWidth, int ellipseHeight);
    /// @param size of @p data in bytes.
    bool ExtCreateRegion(const XFORM& transform, int size, const RGNDATA& data);
    /// @}

    /// Makes this region, which must be there, the combination of the two (RGN_AND, RGN_OR …).
    int CombineRgn(HRGN first, HRGN second, int mode);
    /// Makes this region, which must be there, equal to @p source (`CombineRgn` with RGN_COPY).
    int Copy(HRGN source);
    bool EqualRgn(HRGN other) const;
    int GetRgnBox(RECT& box) const;
    /// @param size of @p data in bytes.
    /// @return the bytes stored, 0 on failure.
    int GetRegionData(RGNDATA& data, unsigned int size) const;
    int OffsetRgn(int x, int y);
    int OffsetRgn(const POINT& offset);
    bool PtInRegion(int x, int y) const;
    bool PtInRegion(const POINT& point) const;
    bool RectInRegion(const RECT& rect) const;
    void SetRectRgn(int left, int top, int right, int bottom);
    void SetRectRgn(const RECT& rect);

private:
    HRGN m_hRgn;
};
