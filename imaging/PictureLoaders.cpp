#include "imaging/LzwScan.h"
#include "imaging/PictureRecord.h"
#include "imaging/ToolkitControl.h"

#include <kelcore/file.h>
#include <kelcore/text.h>

namespace {

// A string of automation with the units of a text.
class AutomationString {
public:
    explicit AutomationString(const WideString& text)
        : m_text(SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()), static_cast<UINT>(text.size()))) {}
    AutomationString(const AutomationString&) = delete;
    AutomationString& operator=(const AutomationString&) = delete;
    ~AutomationString() { SysFreeString(m_text); }

    BSTR Get() const { return m_text; }

private:
    BSTR m_text;
};

} // namespace

void kel::LoadFromFile(toolkit::IControl* control, const WideString& path) {
    const AutomationString name(StdA2W(StdW2A(File::GetShortPath(path))));
    if (!name.Get())
        throw ToolkitError(E_OUTOFMEMORY, control);
    CallToolkit(control, toolkit::SetFileName, name.Get());
}

void kel::CheckLoaded(toolkit::IControl* control) {
    const SHORT status = LoadStatusOf(control);
    if (status == toolkit::kDamaged)
        throw XPDib::XP_StatusMinus2;
    if (status != toolkit::kLoaded || !PictureOf(control))
        throw XPDib::XP_Failed;
}

void kel::LoadPicture(toolkit::IControl* control, const WideString& path) {
    ForgetLoadStatus(control);
    LoadFromFile(control, path);
    CheckLoaded(control);
}

bool XPDib::CheckLZW(const WideString& path) {
    return kel::IsRefusedForLzw(path);
}

bool XPDib::LoadBitmapA(const WideString& path, const WideString&, const WideString&, const WideString&,
                        const WideString&) {
    if (CheckLZW(path))
        throw XP_LzwRefused;
    if (m_pRef->refCount > 1)
        TakeNewRecord();
    m_pRef->fileName.clear();
    if (!InitImageXpress(m_pRef))
        throw XP_Failed;
    kel::LoadPicture(m_pRef->control, path);
    m_pRef->fileName = File::GetBasename(path, WideString());
    return true;
}

void XPDib::LoadBitmapA(const void* data, int length) {
    if (!data || length < 1)
        throw XP_BadSource;
    SetEmpty();
    if (!Detach() || !InitImageXpress(m_pRef))
        throw XP_Failed;
    kel::ForgetLoadStatus(m_pRef->control);
    kel::CallToolkit(m_pRef->control, kel::toolkit::LoadFromMemory, static_cast<const BYTE*>(data), length);
    kel::CheckLoaded(m_pRef->control);
}
