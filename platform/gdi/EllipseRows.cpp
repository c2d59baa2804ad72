#include "platform/gdi/EllipseRows.h"

#include <cstddef>
#include <new>

namespace kel::platform {
namespace {

/// Walks along a quarter of the ellipse through the outermost pixels of a box, from its left end to its top (Zingl,
/// "A Rasterizing Algorithm for Drawing Curves"). Numbers beyond 2^53 only come up for ellipses far larger than
/// screens, and may be inexact.
class Outline {
public:
    Outline(int width, int height)
        : m_across(width - 1), m_down(height - 1), m_odd((height - 1) % 2), m_left(0), m_right(width - 1),
          m_row((height - 1) / 2), m_stepX(4 * (1 - m_across) * m_down * m_down),
          m_stepY(4 * (m_odd + 1) * m_across * m_across), m_error(m_stepX + m_stepY + m_odd * m_across * m_across) {}

    bool IsOpen() const { return m_left <= m_right && m_row >= 0; }
    int Left() const { return m_left; }
    int Row() const { return m_row; }

    void Step() {
        const double error = 2 * m_error;
        if (error >= m_stepX) {
            ++m_left;
            --m_right;
            m_error += m_stepX += 8 * m_down * m_down;
        }
        if (error <= m_stepY) {
            --m_row;
            m_error += m_stepY += 8 * m_across * m_across;
        }
    }

private:
    double m_across;
    double m_down;
    double m_odd;
    int m_left;
    int m_right;
    int m_row;
    double m_stepX;
    double m_stepY;
    double m_error;
};

} // namespace

std::vector<int> EllipseInsets(int width, int height) {
    if (width > kLargestEllipse || height > kLargestEllipse)
        throw std::bad_alloc();
    std::vector<int> insets(static_cast<std::size_t>(height + 1) / 2, 0);
    if (width < 2 || height < 2)
        return insets;
    int row = static_cast<int>(insets.size());
    int inset = 0;
    for (Outline outline(width, height); outline.IsOpen(); outline.Step())
        if (outline.Row() < row) {
            row = outline.Row();
            inset = outline.Left();
            insets[static_cast<std::size_t>(row)] = inset;
        }
    // The two halves of a narrow outline meet before the top.
    while (row > 0)
        insets[static_cast<std::size_t>(--row)] = inset;
    return insets;
}

} // namespace kel::platform
