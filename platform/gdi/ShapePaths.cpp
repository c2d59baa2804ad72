#include "platform/gdi/ShapePaths.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kel::platform {
namespace {

constexpr double kPi = std::numbers::pi;

/// An ellipse; angles run from the right downwards, in parts of the round of the circle that it is the picture of.
struct Oval {
    double x; ///< the middle
    double y;
    double across; ///< half of the width
    double down;

    explicit Oval(const RECT& box)
        : x(0.5 * (box.right - 1) + 0.5 * box.left), y(0.5 * (box.bottom - 1) + 0.5 * box.top),
          across(0.5 * (box.right - 1) - 0.5 * box.left), down(0.5 * (box.bottom - 1) - 0.5 * box.top) {}

    /// The point at an angle, moved on by so much of the direction it has there.
    POINT At(double angle, double onwards = 0) const {
        const double dx = across * (std::cos(angle) - onwards * std::sin(angle));
        const double dy = down * (std::sin(angle) + onwards * std::cos(angle));
        return {static_cast<LONG>(std::lround(x + dx)), static_cast<LONG>(std::lround(y + dy))};
    }
};

/// Adds curves from where the path is, at most a quarter of a round each.
void AddArc(DrawingPath& path, const Oval& oval, double start, double sweep) {
    const int count = std::max(1, static_cast<int>(std::ceil(std::abs(sweep) / (kPi / 2) - 1e-9)));
    const double step = sweep / count;
    const double onwards = 4.0 / 3 * std::tan(step / 4); // makes the middle of the curve lie on the arc
    for (int i = 0; i < count; ++i) {
        const double from = start + i * step;
        const POINT curve[] = {oval.At(from, onwards), oval.At(from + step, -onwards), oval.At(from + step)};
        path.CurveTo(curve, 3);
    }
}

} // namespace

DrawingPath RectanglePath(const RECT& box) {
    DrawingPath path;
    path.MoveTo({box.right - 1, box.top});
    path.LineTo({box.left, box.top});
    path.LineTo({box.left, box.bottom - 1});
    path.LineTo({box.right - 1, box.bottom - 1});
    path.Close();
    return path;
}

DrawingPath EllipsePath(const RECT& box) {
    const Oval oval(box);
    DrawingPath path;
    path.MoveTo(oval.At(0));
    AddArc(path, oval, /*start*/ 0, -2 * kPi);
    path.Close();
    return path;
}

DrawingPath RoundRectPath(const RECT& box, int width, int height) {
    const int across = std::min(width, static_cast<int>(box.right - box.left));
    const int down = std::min(height, static_cast<int>(box.bottom - box.top));
    if (across < 1 || down < 1)
        return RectanglePath(box);
    const int left = std::min<int>(box.left + across + 1, box.right);
    const int top = std::min<int>(box.top + down + 1, box.bottom);
    const int right = std::max<int>(box.right - across - 1, box.left);
    const int bottom = std::max<int>(box.bottom - down - 1, box.top);
    const RECT corners[] = {{right, box.top, box.right, top},
                            {box.left, box.top, left, top},
                            {box.left, bottom, left, box.bottom},
                            {right, bottom, box.right, box.bottom}};
    DrawingPath path;
    double angle = 0;
    for (const RECT& corner : corners) {
        const Oval oval(corner);
        if (path.Points().empty())
            path.MoveTo(oval.At(angle));
        else
            path.LineTo(oval.At(angle));
        AddArc(path, oval, angle, -kPi / 2);
        angle -= kPi / 2;
    }
    path.Close();
    return path;
}

} // namespace kel::platform
