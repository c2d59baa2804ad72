#pragma once

#include "platform/user/TextLayout.h"

namespace kel::platform {

/// The texts of DrawTextA, wide or narrow alike.
struct TextToDraw {
    TextRun run;
    UINT format;
    TextLine changed{}; ///< receives the last line that was shortened
};

/// Lays @p text out in @p rect and draws it or, with DT_CALCRECT, sets the rectangle. @return as DrawTextA.
/// @throws std::bad_alloc
int DrawInRect(DeviceContext& context, TextToDraw& text, RECT& rect);

} // namespace kel::platform
