// What the module exports. Nothing else leaves it: everything is reached through the control's table.

#include "toolkit/Control.h"
#include "toolkit/OwnModule.h"
#include "toolkit/Registration.h"

#include <kelcore/export.h>
#include <kelcore/imaging/toolkit.h>

#include <new>

namespace {

using namespace kel::toolkit;

HRESULT ResultOf(LONG error) {
    constexpr std::uint32_t kSystemError = 0x80070000;
    return error == ERROR_SUCCESS ? S_OK : static_cast<HRESULT>(kSystemError | static_cast<std::uint16_t>(error));
}

/// A control that is connected to @p sink; null if there is no memory or the sink is none.
Control* MakeConnected(IUnknown* sink, DWORD& cookie) noexcept {
    try {
        Control* const control = new Control;
        cookie = control->Sink().Connect(sink);
        if (cookie != 0)
            return control;
        control->Release();
    } catch (const std::bad_alloc&) {
    }
    return nullptr;
}

HRESULT RegisterOwnModule() noexcept {
    try {
        const std::string path = OwnPath();
        return path.empty() ? E_FAIL : ResultOf(Register(path.c_str()));
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

HRESULT UnregisterOwnModule() noexcept {
    try {
        return ResultOf(Unregister());
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

} // namespace

extern "C" {

KELCORE_API void IX_ConnectEvents(IControl** control, DWORD* cookie, IDispatch* sink, LONG* /*sinkReferences*/) {
    StayLoaded();
    *cookie = 0;
    Control* const made = MakeConnected(sink, *cookie);
    *control = made ? made->Interface() : nullptr;
}

KELCORE_API void IX_DisConnectEvents(IControl* control, DWORD cookie) {
    if (control)
        Control::From(control).Sink().Disconnect(cookie);
}

/// Registers the module, by the path that it was loaded from, as the toolkit of this machine.
KELCORE_API HRESULT STDMETHODCALLTYPE DllRegisterServer() {
    return RegisterOwnModule();
}

KELCORE_API HRESULT STDMETHODCALLTYPE DllUnregisterServer() {
    return UnregisterOwnModule();
}

} // extern "C"
