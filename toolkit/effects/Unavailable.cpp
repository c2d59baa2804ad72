// The filters of a module that is built without OpenCV: they answer so, and the picture stays.

#include "toolkit/effects/Effect.h"

namespace kel::toolkit::effects {

HRESULT Emboss(PackedDib&) {
    return E_NOTIMPL;
}
HRESULT Erode(PackedDib&) {
    return E_NOTIMPL;
}
HRESULT Outline(PackedDib&) {
    return E_NOTIMPL;
}
HRESULT Sharpen(PackedDib&, SHORT) {
    return E_NOTIMPL;
}
HRESULT Soften(PackedDib&, SHORT) {
    return E_NOTIMPL;
}

} // namespace kel::toolkit::effects
