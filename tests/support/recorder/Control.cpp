#include "tests/support/recorder/Control.h"

#include "tests/support/Blocks.h"
#include "tests/support/recorder/Dib.h"
#include "tests/support/recorder/Journal.h"

#include <cstring>
#include <utility>

namespace kel::recorder {

using test::BlockOf;
using test::BytesOf;

Control::Control() : number(TheJournal().NextControl()), m_face{ControlTable(), this} {
    ++TheJournal().alive;
    TheJournal().Write("connect " + std::to_string(number));
}

Control::~Control() {
    TheJournal().Write(std::to_string(number) + " gone");
    Disconnect();
    Take({});
    EndSave();
    --TheJournal().alive;
}

ULONG Control::AddRef() {
    TheJournal().Write(std::to_string(number) + " AddRef");
    return ++m_references;
}

ULONG Control::Release() {
    TheJournal().Write(std::to_string(number) + " Release");
    const ULONG left = --m_references;
    if (left == 0)
        delete this;
    return left;
}

void Control::Connect(IDispatch* events) {
    void* answered = nullptr;
    if (SUCCEEDED(events->QueryInterface(toolkit::kEventInterface, &answered))) {
        sink = static_cast<IDispatch*>(answered);
        ++TheJournal().connected;
    }
}

void Control::Disconnect() {
    if (IDispatch* const events = std::exchange(sink, nullptr)) {
        events->Release();
        --TheJournal().connected;
    }
}

HRESULT Control::Take(const std::string& dib) {
    if (picture)
        GlobalFree(picture);
    picture = dib.empty() ? nullptr : BlockOf(dib);
    return picture ? S_OK : E_OUTOFMEMORY;
}

HRESULT Control::Load(const std::string& file) {
    const SHORT ordered = TheJournal().status;
    Take(DibOfFile(file));
    status = ordered != Recorder::kByMerit ? ordered : picture ? toolkit::kLoaded : toolkit::kUnknown;
    return S_OK;
}

HRESULT Control::Save() {
    const SHORT ordered = TheJournal().status;
    EndSave();
    status = ordered != Recorder::kByMerit ? ordered : toolkit::kLoaded;
    saved = BlockOf("DIB" + BytesOf<std::string>(picture));
    return S_OK;
}

HRESULT Control::EndSave() {
    if (saved)
        GlobalFree(std::exchange(saved, nullptr));
    return S_OK;
}

void Control::KeepForUndo() {
    if (undoEnabled)
        before = BytesOf<std::string>(picture);
}

HRESULT Control::Change() {
    KeepForUndo();
    std::string dib = BytesOf<std::string>(picture);
    if (dib.empty())
        return S_FALSE;
    dib.back() = static_cast<char>(~dib.back());
    return Take(dib);
}

HRESULT Control::Rescale(WORD width, WORD height) {
    KeepForUndo();
    const std::string dib = BytesOf<std::string>(picture);
    BITMAPINFOHEADER header;
    if (dib.size() < sizeof header)
        return S_FALSE;
    std::memcpy(&header, dib.data(), sizeof header);
    return Take(PackedDib(width, height, header.biBitCount));
}

} // namespace kel::recorder
