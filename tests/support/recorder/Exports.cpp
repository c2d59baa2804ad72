#include "tests/support/recorder/Control.h"
#include "tests/support/recorder/Journal.h"

#include <kelcore/export.h>

using namespace kel::recorder;
using kel::toolkit::IControl;

// A connection's number tells it from those of other controls.
constexpr DWORD kFirstCookie = 0xC0DE0000;

extern "C" {

KELCORE_API void IX_ConnectEvents(IControl** control, DWORD* cookie, IDispatch* sink, LONG* /*sinkReferences*/) {
    if (TheJournal().refuses)
        return;
    auto* const made = new Control;
    made->Connect(sink);
    *cookie = kFirstCookie + static_cast<DWORD>(made->number);
    *control = made->Interface();
}

KELCORE_API void IX_DisConnectEvents(IControl* control, DWORD cookie) {
    Control& self = Control::From(control);
    const bool isOwn = cookie == kFirstCookie + static_cast<DWORD>(self.number);
    TheJournal().Write((isOwn ? "disconnect " : "wrong cookie for ") + std::to_string(self.number));
    self.Disconnect();
}

KELCORE_API Recorder* KelRecorder() {
    return &TheJournal();
}

} // extern "C"
