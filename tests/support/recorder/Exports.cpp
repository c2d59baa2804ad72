#include "tests/support/recorder/Control.h"
#include "tests/support/recorder/Journal.h"

#include <kelcore/export.h>

#include <algorithm>
#include <vector>

namespace {

using namespace kel::recorder;
using kel::toolkit::IControl;

class TheRecorder final : public Recorder {
public:
    void Reset() override { TheJournal().Reset(); }
    std::string TakeLines() override { return TheJournal().TakeLines(); }
    void Order(int position, int nth, HRESULT result) override { TheJournal().Order(position, nth, result); }
    void OrderStatus(SHORT status) override { TheJournal().status = status; }
    void RefuseControls() override { TheJournal().refuses = true; }
    void SetHook(Hook hook, void* context) override {
        TheJournal().context = context;
        TheJournal().hook = hook;
    }
    void BeSilent() override { TheJournal().silent = true; }
    int Controls() override { return TheJournal().alive; }
    int Sinks() override { return TheJournal().connected; }

    HRESULT Fire(IControl* control, DISPID id, const VARIANT* arguments, UINT count) override {
        std::vector<VARIANT> lastFirst(arguments, arguments + count);
        std::reverse(lastFirst.begin(), lastFirst.end());
        DISPPARAMS parameters = {lastFirst.data(), nullptr, count, 0};
        return Control::From(control).sink->Invoke(id, IID_NULL, /*language*/ 0, DISPATCH_METHOD, &parameters, nullptr,
                                                   nullptr, nullptr);
    }
};

// A connection's number tells it from those of other controls.
constexpr DWORD kFirstCookie = 0xC0DE0000;

} // namespace

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
    static TheRecorder recorder;
    return &recorder;
}

} // extern "C"
