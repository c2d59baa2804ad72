#pragma once

#include "tests/support/recorder/Recorder.h"

#include <atomic>
#include <string>

namespace kel::recorder {

/// A control: its references, its sink and its pictures. ControlTable.cpp has its operations.
class Control {
public:
    /// With one reference, without a picture.
    Control();
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    static Control& From(toolkit::IControl* control) { return *reinterpret_cast<Face*>(control)->owner; }
    toolkit::IControl* Interface() { return reinterpret_cast<toolkit::IControl*>(&m_face); }

    ULONG AddRef();
    ULONG Release();
    void Connect(IDispatch* events);
    void Disconnect();

    /// Takes a copy of a packed bitmap, or none, as the picture. @return what the operation answers.
    HRESULT Take(const std::string& dib);
    HRESULT Load(const std::string& file);
    HRESULT Save();
    HRESULT EndSave();
    HRESULT Change();
    HRESULT Rescale(WORD width, WORD height);

    const int number;
    IDispatch* sink = nullptr;
    HGLOBAL picture = nullptr;
    HGLOBAL saved = nullptr;
    std::string before; // the last effect; empty when there is nothing to undo
    SHORT undoEnabled = 0;
    SHORT status = toolkit::kLoaded;

private:
    ~Control();
    void KeepForUndo();

    /// Clients find the operations through its first member.
    struct Face {
        const void* const* table;
        Control* owner;
    };

    Face m_face;
    std::atomic<ULONG> m_references{1};
};

/// The operations of every control, each of which is written down before it works.
const void* const* ControlTable();

} // namespace kel::recorder
