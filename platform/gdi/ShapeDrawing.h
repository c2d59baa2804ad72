#pragma once

/// @file
/// What the calls of lines, shapes and paths have in common.

#include "platform/gdi/Painting.h"
#include "platform/kernel/Faults.h"

namespace kel::platform {

/// Runs @p draw with the context of a hooked call. @return what it returns; false on failure.
template <class Draw>
BOOL OnContext(const char* name, HDC dc, Draw draw) {
    if (CallFails(name))
        return FALSE;
    const auto context = FindContext(dc);
    return context && WithMemory(false, [&] { return draw(*context); });
}

/// The path that drawing adds to, null if none is open.
inline DrawingPath* OpenPath(DeviceContext& context) {
    ContextState& state = context.State();
    return state.path && state.pathIsOpen ? &*state.path : nullptr;
}

/// Draws the figures of a path, or adds them to the open one.
void DrawPath(DeviceContext& context, const DrawingPath& path, bool filled);

/// Fills figures by the context's fill mode.
void FillFigures(DeviceContext& context, const std::vector<Figure>& figures);

} // namespace kel::platform
