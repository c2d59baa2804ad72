#pragma once

#include "toolkit/EventSink.h"
#include "toolkit/Loading.h"
#include "toolkit/PackedDib.h"

#include <kelcore/imaging/toolkit.h>

#include <atomic>

namespace kel::toolkit {

/// A control: one picture and what is done to it. Its members are the operations of <kelcore/imaging/toolkit.h>, where
/// they are described; ControlTable.cpp puts them at their positions. One thread at a time uses a control.
class Control {
public:
    /// A control without a picture and with one reference.
    Control();
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    /// What clients have in their hands.
    IControl* Interface() { return reinterpret_cast<IControl*>(&m_face); }
    static Control& From(IControl* control) { return *reinterpret_cast<Face*>(control)->owner; }

    /// @name IUnknown
    /// @{
    HRESULT QueryInterface(REFIID id, void** object);
    ULONG AddRef();
    ULONG Release();
    /// @}

    EventSink& Sink() { return m_sink; }

    /// @name Settings
    /// @{
    HRESULT SetStorage(LONG kind);
    HRESULT SetKeepOrientation(LONG keep);
    HRESULT SetBudget(LONG megabytes);
    HRESULT SetPixelBudget(LONG megapixels);
    /// @}

    /// @name Pictures
    /// @{
    HRESULT SetFileName(BSTR path);
    HRESULT LoadFromMemory(const BYTE* file, LONG length);
    HRESULT GetLoadStatus(SHORT* status);
    HRESULT GetDibHandle(toolkit::Block* block);
    HRESULT SetDibHandle(toolkit::Block block);
    HRESULT CopyDibHandle(toolkit::Block* block);
    HRESULT CreateBlank(WORD width, WORD height, LONG depth, LONG fill);
    /// @}

    /// @name Saving
    /// @{
    HRESULT SetSaveTarget(LONG target);
    HRESULT SetSaveFormat(LONG format);
    HRESULT Save();
    HRESULT GetSavedBlock(toolkit::Block* block);
    HRESULT EndSave();
    /// @}

    /// @name Effects and undo
    /// @{
    HRESULT SetUndoEnabled(SHORT enabled);
    HRESULT GetUndoEnabled(SHORT* enabled);
    HRESULT GetUndoState(LONG* state);
    HRESULT Undo();

    /// Runs an effect on the picture, having kept what undo needs.
    template <class... Arguments>
    HRESULT Apply(HRESULT (*effect)(PackedDib& picture, Arguments... arguments), Arguments... arguments) {
        PackedDib before;
        const HRESULT ready = BeforeEffect(before);
        return ready == S_OK ? AfterEffect(effect(m_picture.dib, arguments...), std::move(before)) : ready;
    }
    /// @}

private:
    ~Control();

    void Take(Loaded loaded);
    void Replace(PackedDib dib);
    void FreeSaved();
    LoadSettings Settings() const;
    HRESULT BeforeEffect(PackedDib& before) const;
    HRESULT AfterEffect(HRESULT result, PackedDib before);

    /// Clients find the operations through its first member.
    struct Face {
        const void* const* table;
        Control* owner;
    };

    Face m_face;
    std::atomic<ULONG> m_references{1};
    EventSink m_sink;
    Picture m_picture;
    Picture m_before; // the last effect; empty when there is nothing to undo
    bool m_undoEnabled = false;
    SHORT m_status = kLoaded;
    HGLOBAL m_saved = nullptr;
    bool m_keepOrientation = false;
    LONG m_budget = 0;      // MiB; 0 for the environment's
    LONG m_pixelBudget = 0; // 2^20 pixels; 0 for any number
};

} // namespace kel::toolkit
