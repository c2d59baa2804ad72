#pragma once

#include "toolkit/PackedDib.h"

#include <kelcore/imaging/toolkit.h>

#include <tuple>

/// @file
/// The effects. Each takes a picture of any depth and row order that is not empty and leaves its result there, in place
/// or as another picture.
/// @return S_OK; a negative result, and the picture is as it was: E_OUTOFMEMORY, E_INVALIDARG for arguments that have
/// no meaning, E_NOTIMPL where this module was built without it. Nothing is thrown.
namespace kel::toolkit::effects {

HRESULT Mosaic(PackedDib& picture, SHORT size);
HRESULT Brightness(PackedDib& picture, SHORT amount);
HRESULT Contrast(PackedDib& picture, SHORT amount);
HRESULT Flip(PackedDib& picture);
HRESULT Mirror(PackedDib& picture);
HRESULT Negate(PackedDib& picture);
HRESULT Emboss(PackedDib& picture);
HRESULT Sharpen(PackedDib& picture, SHORT amount);
HRESULT Soften(PackedDib& picture, SHORT amount);
HRESULT Outline(PackedDib& picture);
HRESULT Equalize(PackedDib& picture);
HRESULT Rotate(PackedDib& picture, double angle);
HRESULT ResizeTo(PackedDib& picture, WORD width, WORD height);
HRESULT Gamma(PackedDib& picture, float gamma);
HRESULT Solarize(PackedDib& picture, SHORT threshold);
HRESULT Posterize(PackedDib& picture, SHORT levels);
HRESULT Bulge(PackedDib& picture, LONG concave);
HRESULT Swirl(PackedDib& picture, double angle);
HRESULT Pinch(PackedDib& picture, SHORT amount);
HRESULT ResampleTo(PackedDib& picture, WORD width, WORD height);
HRESULT Erode(PackedDib& picture);

/// An operation of the control and what it does to the picture.
template <class... Arguments>
struct Effect {
    Operation<Arguments...> operation;
    HRESULT (*apply)(PackedDib& picture, Arguments... arguments);
};

inline constexpr std::tuple kEffects{
    Effect<SHORT>{toolkit::Mosaic, Mosaic},
    Effect<SHORT>{toolkit::Brightness, Brightness},
    Effect<SHORT>{toolkit::Contrast, Contrast},
    Effect<>{toolkit::Flip, Flip},
    Effect<>{toolkit::Mirror, Mirror},
    Effect<>{toolkit::Negate, Negate},
    Effect<>{toolkit::Emboss, Emboss},
    Effect<SHORT>{toolkit::Sharpen, Sharpen},
    Effect<SHORT>{toolkit::Soften, Soften},
    Effect<>{toolkit::Outline, Outline},
    Effect<>{toolkit::Equalize, Equalize},
    Effect<double>{toolkit::Rotate, Rotate},
    Effect<WORD, WORD>{toolkit::ResizeTo, ResizeTo},
    Effect<float>{toolkit::Gamma, Gamma},
    Effect<SHORT>{toolkit::Solarize, Solarize},
    Effect<SHORT>{toolkit::Posterize, Posterize},
    Effect<LONG>{toolkit::Bulge, Bulge},
    Effect<double>{toolkit::Swirl, Swirl},
    Effect<SHORT>{toolkit::Pinch, Pinch},
    Effect<WORD, WORD>{toolkit::ResampleTo, ResampleTo},
    Effect<>{toolkit::Erode, Erode},
};

} // namespace kel::toolkit::effects
