#include "tests/gdi/Kinds.h"

#include <memory>
#include <string>
#include <vector>

namespace {

// Writes its name when it is told.
struct Listener : SysColorObject {
    Listener(std::string& log, char name) : log(&log), name(name) {}
    bool OnSysColorChange() override {
        *log += name;
        return false;
    }
    std::string* log;
    char name;
};

} // namespace

TEST_CASE("pens and brushes follow their colours, copies too") {
    const SysBrush face(COLOR_BTNFACE), same(COLOR_BTNFACE);
    SysBrush empty, assigned;
    const SysPen text(PS_DOT, 3, COLOR_WINDOWTEXT);
    SysPen none, copy(text);
    assigned = face;
    CHECK((face.m_hBrush == same.m_hBrush && face.m_hBrush == assigned.m_hBrush && empty.m_hBrush == nullptr));
    CHECK((copy.m_hPen == text.m_hPen && none.m_hPen == nullptr));
    {
        const Recoloured faces(COLOR_BTNFACE, 0x123456), texts(COLOR_WINDOWTEXT, 0x654321);
        BroadcastSysColorChange();
        CHECK((face.m_hBrush == same.m_hBrush && face.m_hBrush == assigned.m_hBrush && copy.m_hPen == text.m_hPen));
        CHECK((Brushes::NumberOf(face.m_hBrush) == 0x123456 && assigned.m_nIndex == COLOR_BTNFACE));
        const auto pen = Told<LOGPEN>(copy.m_hPen), old = Told<LOGPEN>(none.m_hPen);
        CHECK((pen.lopnStyle == PS_DOT && pen.lopnWidth.x == 3 && pen.lopnColor == 0x654321));
        CHECK((old.lopnStyle == 0 && old.lopnWidth.x == 0 && old.lopnColor == GetSysColor(0)));
        CHECK(Brushes::NumberOf(empty.m_hBrush) == static_cast<int>(GetSysColor(0)));
        CHECK((copy.Create(PS_SOLID, 1, COLOR_BTNFACE) && empty.Create(COLOR_BTNFACE)));
    }
    BroadcastSysColorChange();
    CHECK((empty.m_hBrush == face.m_hBrush && copy.m_nIndex == COLOR_BTNFACE && copy.m_nStyle == PS_SOLID));
    CHECK(Told<LOGPEN>(copy.m_hPen).lopnColor == GetSysColor(COLOR_BTNFACE));
    CHECK(Brushes::NumberOf(face.m_hBrush) == static_cast<int>(GetSysColor(COLOR_BTNFACE)));
}

TEST_CASE("objects are told in the order of their construction, until they go") {
    std::string log;
    std::vector<std::unique_ptr<Listener>> listeners;
    for (const char name : {'a', 'b', 'c', 'd'})
        listeners.push_back(std::make_unique<Listener>(log, name));
    const Listener copy(*listeners[1]);
    BroadcastSysColorChange();
    listeners.erase(listeners.begin() + 2);
    *listeners[0] = copy; // takes the name, not the place
    BroadcastSysColorChange();
    CHECK(log == "abcdbbbdb");
}

TEST_CASE("what cannot be made again is not there, and is remembered") {
    kel::test::WithEachCallFailing(ERROR_NOT_ENOUGH_MEMORY, [] {
        SysPen pen(PS_DOT, 3, COLOR_WINDOWTEXT);
        SysBrush brush(COLOR_BTNFACE);
        const bool made = pen.OnSysColorChange() & brush.OnSysColorChange() & pen.Create(PS_DASH, 5, COLOR_MENU) &
                          brush.Create(COLOR_MENU);
        CHECK((made || kel::test::HasCallFailed()));
        CHECK((pen.m_nWidth == 5) == (pen.m_hPen != nullptr));
        CHECK((brush.m_nIndex == COLOR_MENU) == (brush.m_hBrush != nullptr));
        if (!kel::test::FaultIsOver())
            return;
        BroadcastSysColorChange();
        CHECK((Told<LOGPEN>(pen.m_hPen).lopnWidth.x == pen.m_nWidth && brush.m_hBrush != nullptr));
    });
}
