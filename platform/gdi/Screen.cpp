#include "platform/gdi/Screen.h"

#include "platform/gdi/BitmapObject.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace kel::platform {
namespace {

constexpr int kLargestSide = 16384;

SIZE WantedSize() {
    int width = 0;
    int height = 0;
    const char* wanted = std::getenv("KELCORE_SCREEN");
    const bool fits = wanted && std::sscanf(wanted, "%dx%d", &width, &height) == 2 && width > 0 && height > 0 &&
                      width <= kLargestSide && height <= kLargestSide;
    return fits ? SIZE{width, height} : SIZE{1024, 768};
}

Surface MakeScreen() {
    const SIZE size = WantedSize();
    // Never destroyed: contexts of static objects may draw until the process ends.
    static const auto& pixels =
        *new std::shared_ptr<BitmapObject>(MakeDeviceBitmap(size.cx, size.cy, PixelFormat::Bgrx32));
    return pixels->Pixels();
}

int Millimetres(int pixels) {
    return static_cast<int>(std::lround(pixels * 25.4 / kScreenDotsPerInch));
}

} // namespace

const Surface& Screen() {
    static const Surface screen = MakeScreen();
    return screen;
}

SIZE ScreenMillimetres() {
    return {Millimetres(Screen().width), Millimetres(Screen().height)};
}

} // namespace kel::platform
