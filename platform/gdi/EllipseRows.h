#pragma once

/// @file
/// Which pixels of their rows ellipses reach.

#include <vector>

namespace kel::platform {

/// The widest and highest ellipse there is.
constexpr int kLargestEllipse = 1 << 20;

/// An ellipse of @p width x @p height pixels (at least 1): for each row of its upper half, from the top, the number of
/// pixels at either end that lie outside. Of an odd number of rows the middle one belongs to the upper half. Regions,
/// and curved corners by their quarters, are made of these; on Wine, too.
/// @throws std::bad_alloc also for larger ones
std::vector<int> EllipseInsets(int width, int height);

} // namespace kel::platform
