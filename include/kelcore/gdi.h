#pragma once

/// @file
/// Drawing: owners of device contexts, pens, brushes, fonts, regions and image lists, and the pens and brushes that
/// follow the system's colours.

#include <kelcore/gdi/devicecontexts.h>
#include <kelcore/gdi/drawingobjects.h>
#include <kelcore/gdi/imagelists.h>
#include <kelcore/gdi/regions.h>
#include <kelcore/gdi/systemcolours.h>
