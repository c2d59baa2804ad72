#pragma once

#include <kelcore/gdi.h>

/// The icons of the form, 24 x 24 pixels; the last one is made an overlay.
enum Icon { kIconAnchor, kIconLight, kIconWave, kIconMark, kIcons };

constexpr int kIconSize = 24;
constexpr int kMarkOverlay = 1;

/// Draws the icons and fills an empty list with them. @return false if the system refused.
bool MakeIcons(ImageList& icons);

/// Draws an icon. @param style ILD_ values.
void PaintIcon(ImageList& icons, int icon, HDC dc, int x, int y, unsigned int style);
