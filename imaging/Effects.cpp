#include "imaging/ToolkitControl.h"

namespace {

namespace toolkit = kel::toolkit;

template <class... Parameters>
bool Did(toolkit::IControl* control, const toolkit::Operation<Parameters...>& operation,
         std::type_identity_t<Parameters>... arguments) {
    return kel::CallToolkit(control, operation, arguments...) == S_OK;
}

bool HasSides(const Size& size) {
    return size.cx >= 1 && size.cy >= 1;
}

} // namespace

// An effect works on a picture that is this object's alone.
bool XPDib::MayChange() {
    return Detach() && !IsEmpty();
}

bool XPDib::Equalize() {
    return MayChange() && Did(m_pRef->control, toolkit::Equalize);
}

bool XPDib::Emboss() {
    return MayChange() && Did(m_pRef->control, toolkit::Emboss);
}

bool XPDib::Erode() {
    return MayChange() && Did(m_pRef->control, toolkit::Erode);
}

bool XPDib::Mirror() {
    return MayChange() && Did(m_pRef->control, toolkit::Mirror);
}

bool XPDib::Flip() {
    return MayChange() && Did(m_pRef->control, toolkit::Flip);
}

bool XPDib::Negate() {
    return MayChange() && Did(m_pRef->control, toolkit::Negate);
}

bool XPDib::Outline() {
    return MayChange() && Did(m_pRef->control, toolkit::Outline);
}

bool XPDib::Concave() {
    return MayChange() && Did(m_pRef->control, toolkit::Bulge, /*concave*/ 1);
}

bool XPDib::Convex() {
    return MayChange() && Did(m_pRef->control, toolkit::Bulge, /*convex*/ 0);
}

bool XPDib::Pinch(short amount) {
    return MayChange() && Did(m_pRef->control, toolkit::Pinch, amount);
}

bool XPDib::Gamma(float gamma) {
    return MayChange() && Did(m_pRef->control, toolkit::Gamma, gamma);
}

bool XPDib::Solarize(short threshold) {
    return MayChange() && Did(m_pRef->control, toolkit::Solarize, threshold);
}

bool XPDib::Posterize(short levels) {
    return MayChange() && Did(m_pRef->control, toolkit::Posterize, levels);
}

bool XPDib::Swirl(double angle) {
    return MayChange() && Did(m_pRef->control, toolkit::Swirl, angle);
}

bool XPDib::Contrast(short amount) {
    return MayChange() && Did(m_pRef->control, toolkit::Contrast, amount);
}

bool XPDib::Brightness(short amount) {
    return MayChange() && Did(m_pRef->control, toolkit::Brightness, amount);
}

bool XPDib::Sharpen(short amount) {
    return MayChange() && Did(m_pRef->control, toolkit::Sharpen, amount);
}

bool XPDib::Soften(short amount) {
    return MayChange() && Did(m_pRef->control, toolkit::Soften, amount);
}

bool XPDib::Mosaic(short size) {
    return MayChange() && Did(m_pRef->control, toolkit::Mosaic, size);
}

bool XPDib::Rotate(double angle) {
    return MayChange() && Did(m_pRef->control, toolkit::Rotate, angle);
}

bool XPDib::Resample(const Size& size) {
    return HasSides(size) && MayChange() &&
           Did(m_pRef->control, toolkit::ResampleTo, static_cast<WORD>(size.cx), static_cast<WORD>(size.cy));
}

bool XPDib::Resize(const Size& size) {
    return HasSides(size) && MayChange() &&
           Did(m_pRef->control, toolkit::ResizeTo, static_cast<WORD>(size.cx), static_cast<WORD>(size.cy));
}

void XPDib::EnableEffectUndo(bool enable) {
    if (m_pRef->control)
        kel::CallToolkit(m_pRef->control, toolkit::SetUndoEnabled, enable ? 1 : 0);
}

bool XPDib::CanUndoEffect() const {
    toolkit::IControl* const control = m_pRef->control;
    return control && kel::AskToolkit(control, toolkit::GetUndoEnabled) != 0 &&
           kel::AskToolkit(control, toolkit::GetUndoState) != 0;
}

void XPDib::UndoEffect() {
    if (CanUndoEffect())
        kel::CallToolkit(m_pRef->control, toolkit::Undo);
}
