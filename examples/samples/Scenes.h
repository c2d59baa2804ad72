#pragma once

#include "Paint.h"

/// @name Landscapes
/// @{
Canvas Sunrise();
Canvas NightSea();
Canvas Aurora();
Canvas Dunes();
Canvas Mist();
/// @}

/// @name Things
/// The daisy and the lighthouse stand upright; the ship has no colours.
/// @{
Canvas Daisy();
Canvas Balloons();
Canvas Lighthouse();
Canvas Ship();
/// @}

/// @name Graphics
/// The logo has see-through parts.
/// @{
Canvas Logo();
Canvas Silk();
Canvas Tile();
/// @}

/// A picture of few colours.
struct Indexed {
    int width;
    int height;
    std::vector<Colour> colours;
    std::vector<unsigned char> pixels; ///< rows from the top
};

/// A chart of an archipelago in 256 colours.
Indexed Chart();
/// A boat in 16 colours, 32 pixels wide and high.
Indexed Icon();
/// A shell in black lines on white.
Indexed Engraving();
