#include "toolkit/Control.h"

#include "toolkit/Budget.h"
#include "toolkit/ControlTable.h"
#include "toolkit/SavedPicture.h"

#include <utility>

namespace kel::toolkit {
namespace {

// The one value that each of these settings has a meaning for.
constexpr LONG kPackedStorage = 2;
constexpr LONG kSaveToMemory = 1;
constexpr LONG kOwnFormat = 10;

HRESULT Accept(bool meaningful) {
    return meaningful ? S_OK : E_INVALIDARG;
}

} // namespace

Control::Control() : m_face{ControlTable(), this} {}

Control::~Control() {
    FreeSaved();
}

HRESULT Control::QueryInterface(REFIID id, void** object) {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (!IsEqualIID(id, kControlInterface) && !IsEqualIID(id, IID_IUnknown))
        return E_NOINTERFACE;
    AddRef();
    *object = Interface();
    return S_OK;
}

ULONG Control::AddRef() {
    return ++m_references;
}

ULONG Control::Release() {
    const ULONG left = --m_references;
    if (left == 0)
        delete this;
    return left;
}

HRESULT Control::SetStorage(LONG kind) {
    return Accept(kind == kPackedStorage);
}

HRESULT Control::SetKeepOrientation(LONG keep) {
    m_keepOrientation = keep != 0;
    return S_OK;
}

HRESULT Control::SetBudget(LONG megabytes) {
    if (megabytes < 0)
        return E_INVALIDARG;
    m_budget = megabytes;
    return S_OK;
}

HRESULT Control::SetPixelBudget(LONG megapixels) {
    if (megapixels < 0)
        return E_INVALIDARG;
    m_pixelBudget = megapixels;
    return S_OK;
}

LoadSettings Control::Settings() const {
    LoadSettings settings;
    settings.budget.bytes =
        m_budget == 0 ? EnvironmentBudget() : static_cast<std::uint64_t>(m_budget) * Budget::kMegabyte;
    settings.budget.pixels = static_cast<std::uint64_t>(m_pixelBudget) * Budget::kMegabyte;
    settings.keepOrientation = m_keepOrientation;
    return settings;
}

HRESULT Control::SetFileName(BSTR path) {
    Replace({});
    Take(LoadPath(path, Settings()));
    return S_OK;
}

HRESULT Control::LoadFromMemory(const BYTE* file, LONG length) {
    if (length < 0 || (!file && length != 0))
        return E_INVALIDARG;
    Replace({});
    Take(LoadBytes({file, static_cast<std::size_t>(length)}, Settings()));
    return S_OK;
}

void Control::Take(Loaded loaded) {
    m_picture = std::move(loaded.picture);
    m_status = loaded.status;
}

// The new picture has no past.
void Control::Replace(PackedDib dib) {
    m_before = {};
    m_picture = {std::move(dib), {}};
    m_status = kLoaded;
}

HRESULT Control::GetLoadStatus(SHORT* status) {
    if (!status)
        return E_POINTER;
    *status = m_status;
    return S_OK;
}

HRESULT Control::GetDibHandle(toolkit::Block* block) {
    if (!block)
        return E_POINTER;
    *block = m_picture.dib.Block();
    return S_OK;
}

HRESULT Control::SetDibHandle(toolkit::Block block) {
    if (!block) {
        Replace({});
        return S_OK;
    }
    PackedDib dib = PackedDib::Adopt(block);
    if (!dib)
        return E_INVALIDARG;
    if (block == m_picture.dib.Block())
        m_picture.dib.Release(); // it comes back as the new picture
    Replace(std::move(dib));
    return S_OK;
}

HRESULT Control::CopyDibHandle(toolkit::Block* block) {
    if (!block)
        return E_POINTER;
    *block = m_picture.dib.Copy().Release();
    return S_OK;
}

HRESULT Control::CreateBlank(WORD width, WORD height, LONG depth, LONG fill) {
    if (!LayoutOf(width, height, depth) || fill != 0)
        return E_INVALIDARG;
    PackedDib dib = PackedDib::Make(width, height, depth);
    if (!dib)
        return E_OUTOFMEMORY;
    Replace(std::move(dib));
    return S_OK;
}

HRESULT Control::SetSaveTarget(LONG target) {
    return Accept(target == kSaveToMemory);
}

HRESULT Control::SetSaveFormat(LONG format) {
    return Accept(format == kOwnFormat);
}

HRESULT Control::Save() {
    FreeSaved();
    m_status = kUnknown;
    const DibLock dib(m_picture.dib);
    if (!dib)
        return S_OK;
    const Source& source = m_picture.source;
    m_saved = m_picture.IsAsDecoded() ? SaveFile(source.file.View(), source.keepOrientation) : SaveBitmap(dib);
    m_status = m_saved ? kLoaded : kOverBudget;
    return S_OK;
}

HRESULT Control::GetSavedBlock(toolkit::Block* block) {
    if (!block)
        return E_POINTER;
    *block = m_saved;
    return S_OK;
}

HRESULT Control::EndSave() {
    FreeSaved();
    return S_OK;
}

void Control::FreeSaved() {
    if (m_saved)
        GlobalFree(std::exchange(m_saved, nullptr));
}

HRESULT Control::SetUndoEnabled(SHORT enabled) {
    m_undoEnabled = enabled != 0;
    if (!m_undoEnabled)
        m_before = {};
    return S_OK;
}

HRESULT Control::GetUndoEnabled(SHORT* enabled) {
    if (!enabled)
        return E_POINTER;
    *enabled = m_undoEnabled ? 1 : 0;
    return S_OK;
}

HRESULT Control::GetUndoState(LONG* state) {
    if (!state)
        return E_POINTER;
    *state = m_before.dib ? 1 : 0;
    return S_OK;
}

HRESULT Control::Undo() {
    if (!m_before.dib)
        return S_FALSE;
    m_picture = std::exchange(m_before, {});
    return S_OK;
}

HRESULT Control::BeforeEffect(PackedDib& before) const {
    if (!m_picture.dib)
        return S_FALSE;
    if (!m_undoEnabled)
        return S_OK;
    before = m_picture.dib.Copy();
    return before ? S_OK : E_OUTOFMEMORY;
}

// What the picture was decoded from belongs to what it was.
HRESULT Control::AfterEffect(HRESULT result, PackedDib before) {
    if (FAILED(result))
        return result;
    m_before = {std::move(before), std::exchange(m_picture.source, {})};
    if (!m_before.dib)
        m_before = {};
    return result;
}

} // namespace kel::toolkit
