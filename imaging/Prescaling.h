#pragma once

#include <kelcore/imaging/picture.h>

/// @file
/// Resampling a picture for the place it is shown in.
namespace kel {

/// Resamples a control's picture to the size that it takes when it is fitted into @p target, if that has fewer than
/// @p limit times its pixels.
/// @return false without a picture and for an empty target.
bool PrescaleToFit(toolkit::IControl* control, const Rect& target, XSize<double> scale, double limit);

} // namespace kel
