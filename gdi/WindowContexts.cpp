#include <kelcore/gdi/devicecontexts.h>

#include <utility>

// The base would delete a context that is the window's: each of these forgets it before the base comes.

ClientDC::ClientDC(HWND window) : m_hWnd(window) {
    Attach(GetDC(m_hWnd));
}

ClientDC::ClientDC(IComplexWindowObject* object) : ClientDC(object->GetWindowHandle()) {
    SetClipArea(object);
}

ClientDC::~ClientDC() {
    ReleaseDC(m_hWnd, std::exchange(m_hDC, nullptr));
}

PaintDC::PaintDC(HWND window) : m_hWnd(window), m_paint() {
    Attach(BeginPaint(m_hWnd, &m_paint));
}

PaintDC::PaintDC(IComplexWindowObject* object) : PaintDC(object->GetWindowHandle()) {
    SetClipArea(object);
}

PaintDC::~PaintDC() {
    EndPaint(m_hWnd, &m_paint);
    m_hDC = nullptr;
}

WindowDC::WindowDC(HWND window) : m_hWnd(window) {
    Attach(GetWindowDC(m_hWnd));
}

WindowDC::~WindowDC() {
    ReleaseDC(m_hWnd, std::exchange(m_hDC, nullptr));
}
