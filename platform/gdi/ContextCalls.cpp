#include "platform/gdi/DeviceContext.h"
#include "platform/gdi/Screen.h"
#include "platform/kernel/Faults.h"

namespace kel::platform {
namespace {

HDC MakeMemoryContext() {
    return static_cast<HDC>(WithMemory(HGDIOBJ(), [] {
        Screen(); // here a lack of memory can be told; every context may come to it later
        return AddObject(std::make_shared<DeviceContext>(DeviceContext::Kind::Memory));
    }));
}

int SizeCapability(int index) {
    const Surface& screen = Screen();
    switch (index) {
    case HORZSIZE:
        return ScreenMillimetres().cx;
    case VERTSIZE:
        return ScreenMillimetres().cy;
    case HORZRES:
    case DESKTOPHORZRES:
        return screen.width;
    case VERTRES:
    case DESKTOPVERTRES:
        return screen.height;
    default:
        return 0;
    }
}

// A 32-bit raster display. All lines, curves and polygons are drawn by the layer itself, hence no bits for them.
int Capability(int index) {
    switch (index) {
    case TECHNOLOGY:
        return DT_RASDISPLAY;
    case BITSPIXEL:
        return BitsPerPixel(Screen().format);
    case PLANES:
    case CLIPCAPS:
        return 1;
    case NUMBRUSHES:
    case NUMPENS:
    case NUMCOLORS: // no limit
        return -1;
    case RASTERCAPS:
        return RC_BITBLT | RC_BITMAP64 | RC_GDI20_OUTPUT | RC_DI_BITMAP | RC_DIBTODEV | RC_STRETCHBLT | RC_STRETCHDIB;
    case ASPECTX:
    case ASPECTY:
        return 36;
    case ASPECTXY: // the diagonal of the two
        return 51;
    case LOGPIXELSX:
    case LOGPIXELSY:
        return kScreenDotsPerInch;
    case NUMRESERVED:
        return 20;
    case COLORRES:
        return 24;
    case SHADEBLENDCAPS:
        return SB_CONST_ALPHA | SB_PIXEL_ALPHA | SB_PREMULT_ALPHA;
    default:
        return SizeCapability(index);
    }
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

HDC WINAPI CreateCompatibleDC(HDC dc) {
    if (CallFails("CreateCompatibleDC") || (dc && !FindContext(dc)))
        return nullptr;
    return MakeMemoryContext();
}

BOOL WINAPI DeleteDC(HDC dc) {
    const bool fails = CallFails("DeleteDC");
    const auto context = FindContext(dc);
    return context && RemoveObject(*context) && !fails;
}

int WINAPI SaveDC(HDC dc) {
    if (CallFails("SaveDC"))
        return 0;
    const auto context = FindContext(dc);
    return context ? WithMemory(0, [&] { return context->Save(); }) : 0;
}

BOOL WINAPI RestoreDC(HDC dc, int level) {
    const bool fails = CallFails("RestoreDC");
    const auto context = FindContext(dc);
    return context && (context->Restore(level) || Fail(ERROR_INVALID_PARAMETER)) && !fails;
}

int WINAPI GetDeviceCaps(HDC dc, int index) {
    if (CallFails("GetDeviceCaps"))
        return 0;
    return FindContext(dc) ? Capability(index) : 0;
}
