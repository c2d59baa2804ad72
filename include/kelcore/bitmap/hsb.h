#pragma once

/// @file
/// Colours by hue, saturation and brightness.

#include <kelcore/export.h>

/// A colour as hue, saturation and brightness, a plain value. Nothing is clamped: of a hue the fraction counts, and
/// channels that leave 0 to 255 keep their low 8 bits.
class KELCORE_API HSBColor {
public:
    /// Black: all zero.
    HSBColor();
    HSBColor(double h, double s, double b);
    /// RGBtoHSB of the COLORREF.
    HSBColor(unsigned long color);
    HSBColor(const HSBColor& other) = default;
    HSBColor& operator=(const HSBColor& other);
    /// HSBtoRGB.
    operator unsigned long() const;

    /// From a COLORREF, whose top byte is ignored. Greys have hue and saturation 0.
    static HSBColor RGBtoHSB(unsigned long color);
    /// To a COLORREF. Channels are truncated, not rounded, so that a colour may come back one step darker.
    static unsigned long HSBtoRGB(const HSBColor& color);
    static unsigned long HSBtoRGB(const double& hue, const double& saturation, const double& brightness);

    double hue;        ///< fraction of a full turn: 0 red, 1/3 green, 2/3 blue
    double saturation; ///< 0 grey to 1 pure
    double brightness; ///< the largest channel, 0 to 1
};
