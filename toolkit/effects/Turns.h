#pragma once

#include "toolkit/PackedDib.h"

namespace kel::toolkit::effects {

/// Turns the picture left by that many quarters, 0 to 3; every pixel is moved as it is. @return S_OK or E_OUTOFMEMORY,
/// and the picture is as it was.
HRESULT TurnQuarters(PackedDib& picture, int quarters);

} // namespace kel::toolkit::effects
