// Effects of a module that is built without what they rest on: they answer so, and the picture stays.

#include "toolkit/effects/Effect.h"

namespace kel::toolkit::effects {

HRESULT Mosaic(PackedDib&, SHORT) {
    return E_NOTIMPL;
}
HRESULT Brightness(PackedDib&, SHORT) {
    return E_NOTIMPL;
}
HRESULT Contrast(PackedDib&, SHORT) {
    return E_NOTIMPL;
}
HRESULT Flip(PackedDib&) {
    return E_NOTIMPL;
}
HRESULT Mirror(PackedDib&) {
    return E_NOTIMPL;
}
HRESULT Negate(PackedDib&) {
    return E_NOTIMPL;
}
HRESULT Emboss(PackedDib&) {
    return E_NOTIMPL;
}
HRESULT Sharpen(PackedDib&, SHORT) {
    return E_NOTIMPL;
}
HRESULT Soften(PackedDib&, SHORT) {
    return E_NOTIMPL;
}
HRESULT Outline(PackedDib&) {
    return E_NOTIMPL;
}
HRESULT Equalize(PackedDib&) {
    return E_NOTIMPL;
}
HRESULT Rotate(PackedDib&, double) {
    return E_NOTIMPL;
}
HRESULT ResizeTo(PackedDib&, WORD, WORD) {
    return E_NOTIMPL;
}
HRESULT Gamma(PackedDib&, float) {
    return E_NOTIMPL;
}
HRESULT Solarize(PackedDib&, SHORT) {
    return E_NOTIMPL;
}
HRESULT Posterize(PackedDib&, SHORT) {
    return E_NOTIMPL;
}
HRESULT Bulge(PackedDib&, LONG) {
    return E_NOTIMPL;
}
HRESULT Swirl(PackedDib&, double) {
    return E_NOTIMPL;
}
HRESULT Pinch(PackedDib&, SHORT) {
    return E_NOTIMPL;
}
HRESULT ResampleTo(PackedDib&, WORD, WORD) {
    return E_NOTIMPL;
}
HRESULT Erode(PackedDib&) {
    return E_NOTIMPL;
}

} // namespace kel::toolkit::effects
