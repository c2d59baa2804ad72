#include "tests/support/recorder/Control.h"

#include "tests/support/Blocks.h"
#include "tests/support/recorder/Dib.h"
#include "tests/support/recorder/Journal.h"

#include <cstring>
#include <utility>

namespace kel::recorder {

using test::BlockOf;
using test::BytesOf;

namespace {

std::string ContentOf(BSTR path) {
    std::string name(path, path + SysStringLen(path));
    const HANDLE file = CreateFileA(name.c_str(), GENERIC_READ, FILE_SHARE_READ, /*security*/ nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, /*like*/ nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return {};
    std::string content(GetFileSize(file, nullptr), '\0');
    DWORD count = 0;
    ReadFile(file, content.data(), static_cast<DWORD>(content.size()), &count, /*overlapped*/ nullptr);
    CloseHandle(file);
    return content;
}

} // namespace

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

void Control::Take(const std::string& dib) {
    if (m_picture)
        GlobalFree(m_picture);
    m_picture = dib.empty() ? nullptr : BlockOf(dib);
}

void Control::Load(const std::string& file) {
    const SHORT ordered = TheJournal().status;
    Take(DibOfFile(file));
    m_status = ordered != Recorder::kByMerit ? ordered : m_picture ? toolkit::kLoaded : toolkit::kUnknown;
}

HRESULT Control::SetFileName(BSTR path) {
    Load(ContentOf(path));
    return S_OK;
}

HRESULT Control::LoadFromMemory(const BYTE* file, LONG length) {
    Load(std::string(reinterpret_cast<const char*>(file), static_cast<std::size_t>(length)));
    return S_OK;
}

HRESULT Control::GetDibHandle(HGLOBAL* block) {
    *block = m_picture;
    return S_OK;
}

HRESULT Control::SetDibHandle(HGLOBAL block) {
    Take({});
    m_picture = block;
    return S_OK;
}

HRESULT Control::CreateBlank(WORD width, WORD height, LONG depth, LONG) {
    Take(PackedDib(width, height, depth, /*blank*/ true));
    return m_picture ? S_OK : E_OUTOFMEMORY;
}

HRESULT Control::CopyDibHandle(HGLOBAL* block) {
    *block = m_picture ? BlockOf(BytesOf<std::string>(m_picture)) : nullptr;
    return S_OK;
}

HRESULT Control::GetLoadStatus(SHORT* status) {
    *status = m_status;
    return S_OK;
}

HRESULT Control::Save() {
    const SHORT ordered = TheJournal().status;
    EndSave();
    m_status = ordered != Recorder::kByMerit ? ordered : toolkit::kLoaded;
    m_saved = BlockOf("DIB" + BytesOf<std::string>(m_picture));
    return S_OK;
}

HRESULT Control::GetSavedBlock(HGLOBAL* block) {
    *block = m_saved;
    return S_OK;
}

HRESULT Control::EndSave() {
    if (const HGLOBAL saved = std::exchange(m_saved, nullptr))
        GlobalFree(saved);
    return S_OK;
}

HRESULT Control::SetUndoEnabled(SHORT enabled) {
    m_undoEnabled = enabled;
    return S_OK;
}

HRESULT Control::GetUndoEnabled(SHORT* enabled) {
    *enabled = m_undoEnabled;
    return S_OK;
}

HRESULT Control::GetUndoState(LONG* state) {
    *state = m_before.empty() ? 0 : 0x10000; // none of its low bits says it
    return S_OK;
}

HRESULT Control::Undo() {
    Take(std::exchange(m_before, std::string()));
    return S_OK;
}

void Control::KeepForUndo() {
    if (m_undoEnabled)
        m_before = BytesOf<std::string>(m_picture);
}

HRESULT Control::Change() {
    KeepForUndo();
    std::string dib = BytesOf<std::string>(m_picture);
    if (dib.empty())
        return S_FALSE;
    dib.back() = static_cast<char>(~dib.back());
    Take(dib);
    return m_picture ? S_OK : E_OUTOFMEMORY;
}

HRESULT Control::Rescale(WORD width, WORD height) {
    KeepForUndo();
    const std::string dib = BytesOf<std::string>(m_picture);
    BITMAPINFOHEADER header;
    if (dib.size() < sizeof header)
        return S_FALSE;
    std::memcpy(&header, dib.data(), sizeof header);
    Take(PackedDib(width, height, header.biBitCount));
    return m_picture ? S_OK : E_OUTOFMEMORY;
}

} // namespace kel::recorder
