#pragma once

/// @file
/// Pens and brushes that follow the system's colours.

#include <kelcore/gdi/drawingobjects.h>

/// What has to be told that the system's colours have changed. Every such object is on a list of the library from its
/// construction to its destruction; a copy is on the list by itself. The list is not locked: one thread creates and
/// destroys such objects and tells them.
class KELCORE_API SysColorObject {
public:
    SysColorObject();
    SysColorObject(const SysColorObject& other);
    SysColorObject& operator=(const SysColorObject&) = default;
    virtual ~SysColorObject();

    /// Makes the drawing object again from the system's colours. @return whether there is one now.
    virtual bool OnSysColorChange() = 0;
};

/// Tells all SysColorObjects, in the order of their construction, that the system's colours have changed. An
/// application calls it when it learns of that (WM_SYSCOLORCHANGE).
KELCORE_API void BroadcastSysColorChange();

/// A pen in a colour of the system. A copy follows its colour like the original.
class KELCORE_API SysPen : public Pen, public SysColorObject {
public:
    /// Holds nothing; a change of colours makes it a pen of style 0, width 0 and the colour of index 0.
    SysPen();
    /// @param style a PS_ value. @param width in logical units. @param index of a colour (COLOR_WINDOWTEXT …).
    SysPen(int style, int width, int index);

    /// Becomes a pen in the colour @p index (`GetSysColor`).
    /// @return false when the system refuses; nothing is held then, and the next change of colours makes the pen that
    ///         there was before.
    bool Create(int style, int width, int index);
    bool OnSysColorChange() override;

    int m_nStyle;
    int m_nWidth;
    int m_nIndex; ///< of the colour
};

/// A solid brush in a colour of the system. A copy follows its colour like the original.
class KELCORE_API SysBrush : public Brush, public SysColorObject {
public:
    /// Holds nothing; a change of colours makes it a brush in the colour of index 0.
    SysBrush();
    /// @param index of a colour (COLOR_BTNFACE …).
    explicit SysBrush(int index);

    /// Becomes a solid brush in the colour @p index (`GetSysColor`).
    /// @return false when the system refuses; nothing is held then, and the next change of colours makes the brush that
    ///         there was before.
    bool Create(int index);
    bool OnSysColorChange() override;

    int m_nIndex; ///< of the colour
};
