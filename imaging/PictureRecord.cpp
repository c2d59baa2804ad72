#include "imaging/PictureRecord.h"

#include "imaging/LoadQueue.h"
#include "imaging/ToolkitControl.h"
#include "imaging/ToolkitModule.h"

#include <kelcore/imaging/events.h>

#include <memory>
#include <new>
#include <utility>

namespace kel {
namespace {

constexpr DWORD kLookAgainAfter = 10; // milliseconds

void MakeSettings(toolkit::IControl* control) {
    CallToolkit(control, toolkit::SetStorage, 2);
    CallToolkit(control, toolkit::SetKeepOrientation, 0);
    CallToolkit(control, toolkit::SetBudget, 0);
    CallToolkit(control, toolkit::SetUndoEnabled, 0);
    CallToolkit(control, toolkit::SetPixelBudget, 0);
}

// A sink that got no control is of no use to anybody.
std::unique_ptr<CImagXpress> ConnectedSink() {
    std::unique_ptr<CImagXpress> sink(new (std::nothrow) CImagXpress);
    if (sink)
        sink->Connect(ToolkitModule::Registered().Get());
    if (sink && !sink->m_pControl)
        sink.reset();
    return sink;
}

void StopControl(PictureRecord& record) {
    if (!record.control)
        return;
    std::exchange(record.control, nullptr)->Release();
    const std::unique_ptr<CImagXpress> sink(std::exchange(record.eventSink, nullptr));
    if (!sink)
        return;
    sink->Disconnect(ToolkitModule::ByName().Get());
    sink->m_pControl->Release();
}

} // namespace

bool StartControl(PictureRecord& record) {
    if (record.control)
        return true;
    const ToolkitModule module = ToolkitModule::Registered();
    if (!module.Get())
        return false;
    std::unique_ptr<CImagXpress> sink = ConnectedSink();
    if (!sink)
        return false;
    record.control = sink->m_pControl;
    record.control->AddRef();
    record.eventSink = sink.release();
    MakeSettings(record.control);
    return true;
}

void ReleaseRecord(PictureRecord& record) {
    if (record.loadPending)
        Loads().DropAll(record);
    while (record.loadPending)
        Sleep(kLookAgainAfter);
    StopControl(record);
}

} // namespace kel
