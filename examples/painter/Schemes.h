#pragma once

#include <kelcore/platform.h>

/// Sets of system colours.
enum class Scheme { Classic, Dusk };

void UseScheme(Scheme scheme);

/// Brings back the colours that the system had when the object was made.
class SystemColoursKept {
public:
    SystemColoursKept();
    SystemColoursKept(const SystemColoursKept&) = delete;
    SystemColoursKept& operator=(const SystemColoursKept&) = delete;
    ~SystemColoursKept();

private:
    static constexpr int kCount = COLOR_MENUBAR + 1;
    INT m_indexes[kCount];
    COLORREF m_colours[kCount];
};
