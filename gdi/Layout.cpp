// The fields of exported classes are part of the interface of the 32-bit library: clients hold the objects by value.

#include <kelcore/gdi.h>

#include <cstddef>

// Where fields lie in classes with virtual operations is the compiler's business, and this is about that compiler.
#pragma GCC diagnostic ignored "-Winvalid-offsetof"

namespace {

constexpr bool IsOn32Bits(std::size_t value, std::size_t expected) {
    return sizeof(void*) != 4 || value == expected;
}

static_assert(IsOn32Bits(sizeof(DC), 8) && IsOn32Bits(offsetof(DC, m_hDC), 4));
static_assert(IsOn32Bits(sizeof(ClientDC), 12) && IsOn32Bits(offsetof(ClientDC, m_hWnd), 8));
static_assert(IsOn32Bits(sizeof(WindowDC), 12) && IsOn32Bits(offsetof(WindowDC, m_hWnd), 8));
static_assert(IsOn32Bits(sizeof(PAINTSTRUCT), 64));
static_assert(IsOn32Bits(sizeof(PaintDC), 76) && IsOn32Bits(offsetof(PaintDC, m_hWnd), 8) &&
              IsOn32Bits(offsetof(PaintDC, m_paint), 12));
static_assert(IsOn32Bits(sizeof(Brush), 4) && IsOn32Bits(sizeof(LOGBRUSH), 12));
static_assert(IsOn32Bits(sizeof(Pen), 8) && IsOn32Bits(offsetof(Pen, m_hPen), 4) && sizeof(LOGPEN) == 16);
static_assert(IsOn32Bits(sizeof(Font), 8) && IsOn32Bits(offsetof(Font, m_hFont), 4) && sizeof(LOGFONTA) == 60);
static_assert(IsOn32Bits(sizeof(Rgn), 8));
static_assert(IsOn32Bits(sizeof(SysColorObject), 4));
static_assert(IsOn32Bits(sizeof(SysPen), 24) && IsOn32Bits(offsetof(SysPen, m_nStyle), 12));
static_assert(IsOn32Bits(offsetof(SysPen, m_nWidth), 16) && IsOn32Bits(offsetof(SysPen, m_nIndex), 20));
static_assert(IsOn32Bits(sizeof(SysBrush), 12) && IsOn32Bits(offsetof(SysBrush, m_nIndex), 8));
static_assert(IsOn32Bits(sizeof(ImageList), 8) && IsOn32Bits(offsetof(ImageList, m_hImageList), 4));
static_assert(IsOn32Bits(sizeof(IMAGELISTDRAWPARAMS), 68));

} // namespace
