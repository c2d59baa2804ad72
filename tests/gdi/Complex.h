#pragma once

#include <kelcore/gdi.h>

#include <cstddef>

/// A window's object that excludes rectangles and counts what is done with them.
class Complex : public IComplexWindowObject {
public:
    /// @param rects null: asking for one throws a `const char*`. @param count of @p rects; none gives no enumerator.
    Complex(HWND window, const RECT* rects, std::size_t count) : m_window(window), m_rects(rects, count) {}
    HWND GetWindowHandle() override { return m_window; }
    void GetExcludedRects(IRectEnumerator** rects) override {
        wasNull = *rects == nullptr;
        if (m_rects.left != 0)
            *rects = &m_rects;
    }
    /// How many enumerators are out: 1 for one that was not released.
    int Out() const { return m_rects.left == 0 ? 0 : m_rects.references; }

    bool wasNull = false;

private:
    struct Rects : IRectEnumerator {
        Rects(const RECT* rects, std::size_t count) : next(rects), left(count) {}
        HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
        ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references); }
        ULONG STDMETHODCALLTYPE Release() override { return static_cast<ULONG>(--references); }
        bool Next(RECT& rect) override {
            if (given == left)
                return false;
            if (next == nullptr)
                throw "no rectangle";
            rect = next[given++];
            return true;
        }
        const RECT* next;
        std::size_t left, given = 0;
        int references = 1;
    };

    HWND m_window;
    Rects m_rects;
};
