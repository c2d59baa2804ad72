#pragma once

#include <kelcore/bitmap/geometry.h>

/// @file
/// How large the picture of a control is.
namespace kel {

namespace toolkit {
struct IControl;
}

/// Width and height, whatever the order of its rows; (0, 0) without a picture.
Size SizeOfPicture(toolkit::IControl* control);

} // namespace kel
