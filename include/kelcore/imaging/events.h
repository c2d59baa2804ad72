#pragma once

/// @file
/// The sink for the events of toolkit controls.

#include <kelcore/export.h>
#include <kelcore/platform.h>

namespace kel::toolkit {
struct IControl;
} // namespace kel::toolkit

/// An event sink: an IDispatch by shape whose Invoke calls one handler for each event. Here the handlers do nothing.
///
/// It is counted but never deletes itself; its owner does.
class KELCORE_API CImagXpressEventHandler : public IDispatch {
public:
    /// Starts with the count 0.
    CImagXpressEventHandler();
    CImagXpressEventHandler(const CImagXpressEventHandler&) = delete;
    CImagXpressEventHandler& operator=(const CImagXpressEventHandler&) = delete;

    /// Answers the toolkit's event interface and IUnknown, not IDispatch; each success adds a reference.
    /// @return S_OK, E_POINTER for no @p object, or E_NOINTERFACE with null in it.
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
    /// Raises the count, interlocked. @return the new count.
    ULONG STDMETHODCALLTYPE AddRef() override;
    /// Lowers the count, interlocked. @return the new count.
    ULONG STDMETHODCALLTYPE Release() override;

    /// @return S_OK, like the next two; they do nothing.
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID language, ITypeInfo** info) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID language,
                                            DISPID* ids) override;
    /// Calls the handler of the event @p id, see kel::toolkit::Event, with the event's arguments. Events that are
    /// unknown or lack arguments are ignored. @return S_OK.
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID reserved, LCID language, WORD flags, DISPPARAMS* arguments,
                                     VARIANT* result, EXCEPINFO* exception, UINT* argument) override;

    /// @name Handlers. Each returns 0.
    /// @{
    virtual LONG STDMETHODCALLTYPE Click();
    virtual LONG STDMETHODCALLTYPE DblClick();
    virtual LONG STDMETHODCALLTYPE MouseDown(SHORT button, SHORT shift, LONG x, LONG y);
    virtual LONG STDMETHODCALLTYPE MouseMove(SHORT button, SHORT shift, LONG x, LONG y);
    virtual LONG STDMETHODCALLTYPE MouseUp(SHORT button, SHORT shift, LONG x, LONG y);
    virtual LONG STDMETHODCALLTYPE ToolkitEvent1();
    virtual LONG STDMETHODCALLTYPE ToolkitEvent2(LONG first, LONG second);
    virtual LONG STDMETHODCALLTYPE ToolkitEvent3(LONG first, LONG second, LONG third, LONG fourth, LONG fifth);
    /// @}

protected:
    ~CImagXpressEventHandler() = default;

    LONG m_nReferences; ///< a control is told where this lies
};

/// The sink of one control. Each handler calls its callback, if one is set, with the second user word, the first one
/// and the event's arguments.
class KELCORE_API CImagXpress final : public CImagXpressEventHandler {
public:
    using PlainCallback = void (*)(DWORD second, DWORD first);
    using MouseCallback = void (*)(DWORD second, DWORD first, SHORT button, SHORT shift, LONG x, LONG y);
    using TwoCallback = void (*)(DWORD second, DWORD first, LONG, LONG);
    using FiveCallback = void (*)(DWORD second, DWORD first, LONG, LONG, LONG, LONG, LONG);

    /// No connection, no control, no callbacks.
    CImagXpress();
    ~CImagXpress() = default;

    /// Asks a toolkit module for a control and connects this sink, which is new, to it ("IX_ConnectEvents").
    /// @param module null, or one without that function: there is no control then.
    void Connect(HMODULE module);
    /// Ends the connection ("IX_DisConnectEvents", if @p module has it) and lets go of the control.
    void Disconnect(HMODULE module);

    LONG STDMETHODCALLTYPE Click() override;
    LONG STDMETHODCALLTYPE DblClick() override;
    LONG STDMETHODCALLTYPE MouseDown(SHORT button, SHORT shift, LONG x, LONG y) override;
    LONG STDMETHODCALLTYPE MouseMove(SHORT button, SHORT shift, LONG x, LONG y) override;
    LONG STDMETHODCALLTYPE MouseUp(SHORT button, SHORT shift, LONG x, LONG y) override;
    LONG STDMETHODCALLTYPE ToolkitEvent1() override;
    LONG STDMETHODCALLTYPE ToolkitEvent2(LONG first, LONG second) override;
    LONG STDMETHODCALLTYPE ToolkitEvent3(LONG first, LONG second, LONG third, LONG fourth, LONG fifth) override;

    DWORD m_dwCookie; ///< of the connection
    PlainCallback m_pClick;
    PlainCallback m_pDblClick;
    MouseCallback m_pMouseDown;
    MouseCallback m_pMouseMove;
    MouseCallback m_pMouseUp;
    PlainCallback m_pToolkitEvent1;
    TwoCallback m_pToolkitEvent2;
    FiveCallback m_pToolkitEvent3;
    DWORD m_dwUser1;                    ///< the first user word
    DWORD m_dwUser2;                    ///< the second user word
    kel::toolkit::IControl* m_pControl; ///< what the toolkit gave out: one reference
};
