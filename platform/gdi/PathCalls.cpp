#include "platform/gdi/ShapeDrawing.h"

#include <algorithm>
#include <utility>

namespace kel::platform {
namespace {

/// The closed path. @return null with ERROR_CAN_NOT_COMPLETE if there is none.
DrawingPath* ClosedPath(DeviceContext& context) {
    ContextState& state = context.State();
    if (state.path && !state.pathIsOpen)
        return &*state.path;
    Fail(ERROR_CAN_NOT_COMPLETE);
    return nullptr;
}

/// Runs @p use with the figures of the closed path, which goes.
template <class Use>
BOOL WithFigures(const char* name, HDC dc, Use use) {
    return OnContext(name, dc, [&](DeviceContext& context) {
        const DrawingPath* path = ClosedPath(context);
        if (!path)
            return false;
        const std::vector<Figure> figures = path->Figures();
        context.State().path.reset();
        use(context, figures);
        return true;
    });
}

bool CloseTheFigure(DeviceContext& context) {
    DrawingPath* open = OpenPath(context);
    if (!open)
        return Fail(ERROR_CAN_NOT_COMPLETE);
    open->Close();
    return true;
}

HGDIOBJ TakeRegion(DeviceContext& context) {
    const DrawingPath* path = ClosedPath(context);
    if (!path || path->Points().empty())
        return Fail(ERROR_CAN_NOT_COMPLETE), nullptr;
    auto region = std::make_shared<RegionObject>(PolygonRegion(PolygonsOf(path->Figures()), context.State().fillMode));
    context.State().path.reset();
    return AddObject(std::move(region));
}

int Tell(const DeviceContext& context, const DrawingPath& path, LPPOINT points, BYTE* kinds, int room) {
    const int count = static_cast<int>(path.Points().size());
    if (room == 0)
        return count;
    if (room < count || !points || !kinds)
        return Fail(ERROR_INVALID_PARAMETER), -1;
    std::transform(path.Points().begin(), path.Points().end(), points,
                   [&](POINT device) { return context.ToLogical(device); });
    std::copy(path.Kinds().begin(), path.Kinds().end(), kinds);
    return count;
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

BOOL WINAPI BeginPath(HDC dc) {
    return OnContext("BeginPath", dc, [](DeviceContext& context) {
        context.State().path.emplace();
        context.State().pathIsOpen = true;
        return true;
    });
}

BOOL WINAPI EndPath(HDC dc) {
    return OnContext("EndPath", dc, [](DeviceContext& context) {
        return std::exchange(context.State().pathIsOpen, false) || Fail(ERROR_CAN_NOT_COMPLETE);
    });
}

BOOL WINAPI AbortPath(HDC dc) {
    return OnContext("AbortPath", dc, [](DeviceContext& context) {
        context.State().path.reset();
        context.State().pathIsOpen = false;
        return true;
    });
}

BOOL WINAPI CloseFigure(HDC dc) {
    return OnContext("CloseFigure", dc, CloseTheFigure);
}

BOOL WINAPI FillPath(HDC dc) {
    return WithFigures("FillPath", dc, FillFigures);
}

BOOL WINAPI StrokePath(HDC dc) {
    return WithFigures("StrokePath", dc, DrawLines);
}

BOOL WINAPI StrokeAndFillPath(HDC dc) {
    return WithFigures("StrokeAndFillPath", dc, [](DeviceContext& context, std::vector<Figure> figures) {
        for (Figure& figure : figures)
            figure.closed = true;
        FillFigures(context, figures);
        DrawLines(context, figures);
    });
}

HRGN WINAPI PathToRegion(HDC dc) {
    if (CallFails("PathToRegion"))
        return nullptr;
    const auto context = FindContext(dc);
    return context ? static_cast<HRGN>(WithMemory(HGDIOBJ(), [&] { return TakeRegion(*context); })) : nullptr;
}

BOOL WINAPI FlattenPath(HDC dc) {
    return OnContext("FlattenPath", dc, [](DeviceContext& context) {
        DrawingPath* path = ClosedPath(context);
        if (path)
            path->Flatten();
        return path != nullptr;
    });
}

int WINAPI GetPath(HDC dc, LPPOINT points, BYTE* types, int count) {
    if (CallFails("GetPath"))
        return -1;
    const auto context = FindContext(dc);
    const DrawingPath* path = context ? ClosedPath(*context) : nullptr;
    return path ? Tell(*context, *path, points, types, count) : -1;
}
