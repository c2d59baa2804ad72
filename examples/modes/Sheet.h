#pragma once

#include <kelcore/bitmap.h>

/// A sheet of cells in groups: a group is a framed panel, five cells wide, behind a bar of its own colour.
class Sheet {
public:
    static constexpr int kColumns = 5;

    /// @param rows how many rows of cells there will be.
    /// @param groups in how many groups.
    Sheet(int rows, int groups);
    Sheet(const Sheet&) = delete;
    Sheet& operator=(const Sheet&) = delete;
    ~Sheet();

    /// Begins a group of @p rows rows below the last one.
    void BeginGroup(int rows, unsigned long color);

    /// The next cell of the group, row by row, to be drawn on: grey or a checkerboard.
    Rect NextCell(bool checkered);

    HDC Context() const { return m_dc; }

    /// The sheet, empty when it could not be made.
    const GDIBitmap& Picture() const { return m_picture; }

private:
    void Fill(const Rect& area, unsigned long color) const;

    GDIBitmap m_picture;
    HDC m_dc;
    HGDIOBJ m_previous = nullptr;
    int m_top = 0; // of the next group
    int m_groupTop = 0;
    int m_cell = 0;
};
