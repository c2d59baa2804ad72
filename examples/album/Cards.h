#pragma once

#include "Album.h"

/// What a contact sheet shows of the pictures of an album.
namespace kelalbum {

struct Card {
    XPDib picture; ///< made for the sheet: about as large as it is drawn
    WideString name;
    WideString details; ///< measures and depth
};

/// The card of @p entry, whose picture is at hand, for an area of the size @p area that it is drawn into by @p mode.
/// Whoever draws it so at scale 1 loses no detail that fits: it has been resampled where it is drawn smaller.
/// BM_Center shows the middle of the picture pixel for pixel, the other modes show the thumbnail.
/// @throws Failure if the picture cannot be decoded or resampled.
Card MakeCard(const Entry& entry, const Size& area, IBitmap::BM_Mode mode);

/// The card of another entry with the picture of @p first.
Card SameCard(const Card& first, const Entry& entry);

} // namespace kelalbum
