#include <kelcore/imaging/events.h>

#include <kelcore/imaging/toolkit.h>

#include <atomic>

namespace {

using kel::toolkit::Event;

constexpr UINT kMost = 5;

// Numbers in whatever size they come.
LONG NumberIn(const VARIANT& value) {
    switch (value.vt) {
    case VT_I2:
    case VT_BOOL:
        return value.iVal;
    case VT_I4:
        return value.lVal;
    case VT_R4:
        return static_cast<LONG>(value.fltVal);
    case VT_R8:
        return static_cast<LONG>(value.dblVal);
    default:
        return 0;
    }
}

// The arguments of an event in their order; a call carries the last one first.
struct Numbers {
    LONG at[kMost] = {};

    bool Take(const DISPPARAMS* arguments, UINT count) {
        if (!arguments || !arguments->rgvarg || arguments->cArgs < count)
            return false;
        for (UINT i = 0; i != count; ++i)
            at[i] = NumberIn(arguments->rgvarg[arguments->cArgs - 1 - i]);
        return true;
    }

    SHORT Short(int index) const { return static_cast<SHORT>(at[index]); }
};

UINT ArgumentsOf(DISPID id) {
    switch (id) {
    case kel::toolkit::kMouseDown:
    case kel::toolkit::kMouseMove:
    case kel::toolkit::kMouseUp:
        return 4;
    case kel::toolkit::kToolkitEvent2:
        return 2;
    case kel::toolkit::kToolkitEvent3:
        return kMost;
    default:
        return 0;
    }
}

template <class Function>
Function Procedure(HMODULE module, const char* name) {
    if (!module)
        return nullptr;
    return reinterpret_cast<Function>(reinterpret_cast<void (*)()>(GetProcAddress(module, name)));
}

} // namespace

CImagXpressEventHandler::CImagXpressEventHandler() : m_nReferences(0) {}

HRESULT CImagXpressEventHandler::QueryInterface(REFIID id, void** object) {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (!IsEqualIID(id, kel::toolkit::kEventInterface) && !IsEqualIID(id, IID_IUnknown))
        return E_NOINTERFACE;
    *object = this;
    AddRef();
    return S_OK;
}

ULONG CImagXpressEventHandler::AddRef() {
    return static_cast<ULONG>(++std::atomic_ref<LONG>(m_nReferences));
}

ULONG CImagXpressEventHandler::Release() {
    return static_cast<ULONG>(--std::atomic_ref<LONG>(m_nReferences));
}

HRESULT CImagXpressEventHandler::GetTypeInfoCount(UINT*) {
    return S_OK;
}

HRESULT CImagXpressEventHandler::GetTypeInfo(UINT, LCID, ITypeInfo**) {
    return S_OK;
}

HRESULT CImagXpressEventHandler::GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) {
    return S_OK;
}

HRESULT CImagXpressEventHandler::Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*,
                                        UINT*) {
    Numbers values;
    const UINT count = ArgumentsOf(id);
    if (count != 0 && !values.Take(arguments, count))
        return S_OK;
    const LONG* const at = values.at;
    switch (id) {
    case kel::toolkit::kClick:
        Click();
        break;
    case kel::toolkit::kDblClick:
        DblClick();
        break;
    case kel::toolkit::kMouseDown:
        MouseDown(values.Short(0), values.Short(1), at[2], at[3]);
        break;
    case kel::toolkit::kMouseMove:
        MouseMove(values.Short(0), values.Short(1), at[2], at[3]);
        break;
    case kel::toolkit::kMouseUp:
        MouseUp(values.Short(0), values.Short(1), at[2], at[3]);
        break;
    case kel::toolkit::kToolkitEvent1:
        ToolkitEvent1();
        break;
    case kel::toolkit::kToolkitEvent2:
        ToolkitEvent2(at[0], at[1]);
        break;
    case kel::toolkit::kToolkitEvent3:
        ToolkitEvent3(at[0], at[1], at[2], at[3], at[4]);
        break;
    default:
        break;
    }
    return S_OK;
}

LONG CImagXpressEventHandler::Click() {
    return 0;
}

LONG CImagXpressEventHandler::DblClick() {
    return 0;
}

LONG CImagXpressEventHandler::MouseDown(SHORT, SHORT, LONG, LONG) {
    return 0;
}

LONG CImagXpressEventHandler::MouseMove(SHORT, SHORT, LONG, LONG) {
    return 0;
}

LONG CImagXpressEventHandler::MouseUp(SHORT, SHORT, LONG, LONG) {
    return 0;
}

LONG CImagXpressEventHandler::ToolkitEvent1() {
    return 0;
}

LONG CImagXpressEventHandler::ToolkitEvent2(LONG, LONG) {
    return 0;
}

LONG CImagXpressEventHandler::ToolkitEvent3(LONG, LONG, LONG, LONG, LONG) {
    return 0;
}

CImagXpress::CImagXpress()
    : m_dwCookie(0), m_pClick(nullptr), m_pDblClick(nullptr), m_pMouseDown(nullptr), m_pMouseMove(nullptr),
      m_pMouseUp(nullptr), m_pToolkitEvent1(nullptr), m_pToolkitEvent2(nullptr), m_pToolkitEvent3(nullptr),
      m_dwUser1(0), m_dwUser2(0), m_pControl(nullptr) {}

// Callbacks and user words are zero from the start: events that come while it connects are ignored like all others.
void CImagXpress::Connect(HMODULE module) {
    using kel::toolkit::ConnectEvents;
    if (const auto connect = Procedure<ConnectEvents>(module, kel::toolkit::kConnectEventsName))
        connect(&m_pControl, &m_dwCookie, this, &m_nReferences);
}

void CImagXpress::Disconnect(HMODULE module) {
    using kel::toolkit::DisconnectEvents;
    if (const auto disconnect = Procedure<DisconnectEvents>(module, kel::toolkit::kDisconnectEventsName))
        disconnect(m_pControl, m_dwCookie);
}

LONG CImagXpress::Click() {
    if (m_pClick)
        m_pClick(m_dwUser2, m_dwUser1);
    return 0;
}

LONG CImagXpress::DblClick() {
    if (m_pDblClick)
        m_pDblClick(m_dwUser2, m_dwUser1);
    return 0;
}

LONG CImagXpress::MouseDown(SHORT button, SHORT shift, LONG x, LONG y) {
    if (m_pMouseDown)
        m_pMouseDown(m_dwUser2, m_dwUser1, button, shift, x, y);
    return 0;
}

LONG CImagXpress::MouseMove(SHORT button, SHORT shift, LONG x, LONG y) {
    if (m_pMouseMove)
        m_pMouseMove(m_dwUser2, m_dwUser1, button, shift, x, y);
    return 0;
}

LONG CImagXpress::MouseUp(SHORT button, SHORT shift, LONG x, LONG y) {
    if (m_pMouseUp)
        m_pMouseUp(m_dwUser2, m_dwUser1, button, shift, x, y);
    return 0;
}

LONG CImagXpress::ToolkitEvent1() {
    if (m_pToolkitEvent1)
        m_pToolkitEvent1(m_dwUser2, m_dwUser1);
    return 0;
}

LONG CImagXpress::ToolkitEvent2(LONG first, LONG second) {
    if (m_pToolkitEvent2)
        m_pToolkitEvent2(m_dwUser2, m_dwUser1, first, second);
    return 0;
}

LONG CImagXpress::ToolkitEvent3(LONG first, LONG second, LONG third, LONG fourth, LONG fifth) {
    if (m_pToolkitEvent3)
        m_pToolkitEvent3(m_dwUser2, m_dwUser1, first, second, third, fourth, fifth);
    return 0;
}
