#pragma once

/// @file
/// Pictures and colours: the picture interfaces with their geometry, the picture class over bitmaps of the system, and
/// colours by hue, saturation and brightness.

#include <kelcore/bitmap/base.h>
#include <kelcore/bitmap/gdibitmap.h>
#include <kelcore/bitmap/geometry.h>
#include <kelcore/bitmap/hsb.h>
#include <kelcore/bitmap/interfaces.h>
