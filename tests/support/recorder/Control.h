#pragma once

#include "tests/support/recorder/Recorder.h"

#include <atomic>
#include <string>

namespace kel::recorder {

/// A control. Its operations are those of the contract.
class Control {
public:
    /// With one reference, without a picture.
    Control();
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    const int number;
    IDispatch* sink = nullptr;

    static Control& From(toolkit::IControl* control) { return *reinterpret_cast<Face*>(control)->owner; }
    toolkit::IControl* Interface() { return reinterpret_cast<toolkit::IControl*>(&m_face); }

    ULONG AddRef();
    ULONG Release();
    void Connect(IDispatch* sink);
    void Disconnect();

    HRESULT IgnoreNumber(LONG) { return S_OK; }
    HRESULT SetFileName(BSTR path);
    HRESULT GetDibHandle(HGLOBAL* block);
    HRESULT SetDibHandle(HGLOBAL block);
    HRESULT CreateBlank(WORD width, WORD height, LONG depth, LONG zero);
    HRESULT CopyDibHandle(HGLOBAL* block);
    HRESULT GetLoadStatus(SHORT* status);
    HRESULT LoadFromMemory(const BYTE* file, LONG length);
    HRESULT Save();
    HRESULT GetSavedBlock(HGLOBAL* block);
    HRESULT EndSave();
    HRESULT SetUndoEnabled(SHORT enabled);
    HRESULT GetUndoEnabled(SHORT* enabled);
    HRESULT GetUndoState(LONG* state);
    HRESULT Undo();
    template <class... Amounts>
    HRESULT Effect(Amounts...) {
        return Change();
    }
    HRESULT Rescale(WORD width, WORD height);

private:
    ~Control();
    void Take(const std::string& dib);
    void Load(const std::string& file);
    void KeepForUndo();
    HRESULT Change();

    /// Clients find the operations through its first member.
    struct Face {
        const void* const* table;
        Control* owner;
    };

    Face m_face;
    std::atomic<ULONG> m_references{1};
    HGLOBAL m_picture = nullptr;
    HGLOBAL m_saved = nullptr;
    std::string m_before; // the last effect; empty when there is nothing to undo
    SHORT m_undoEnabled = 0;
    SHORT m_status = toolkit::kLoaded;
};

/// The operations of every control, each of which is written down before it works; see ControlTable.cpp.
const void* const* ControlTable();

} // namespace kel::recorder
