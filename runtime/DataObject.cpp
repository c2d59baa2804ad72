#include <kelcore/runtime/objects.h>

const IID IID_KelDataObject = {0x7CADFC7D, 0xB1F1, 0x4010, {0xBA, 0x9C, 0xC8, 0x79, 0xE1, 0x1A, 0xB6, 0xB1}};

DataObject::DataObject() : m_count(1) {}

DataObject::~DataObject() = default;

HRESULT STDMETHODCALLTYPE DataObject::QueryInterface(REFIID id, void** object) {
    if (IsEqualGUID(id, IID_IUnknown) || IsEqualGUID(id, IID_IDataObject)) {
        *object = static_cast<IDataObject*>(this);
    } else if (IsEqualGUID(id, IID_KelDataObject)) {
        *object = this;
    } else {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

ULONG STDMETHODCALLTYPE DataObject::AddRef() {
    return ++m_count;
}

ULONG STDMETHODCALLTYPE DataObject::Release() {
    const unsigned __int32 left = --m_count;
    if (left == 0)
        delete this;
    return left;
}

HRESULT STDMETHODCALLTYPE DataObject::GetData(FORMATETC*, STGMEDIUM*) {
    return E_INVALIDARG;
}

HRESULT STDMETHODCALLTYPE DataObject::GetDataHere(FORMATETC*, STGMEDIUM*) {
    return E_INVALIDARG;
}

HRESULT STDMETHODCALLTYPE DataObject::QueryGetData(FORMATETC*) {
    return E_INVALIDARG;
}

HRESULT STDMETHODCALLTYPE DataObject::GetCanonicalFormatEtc(FORMATETC*, FORMATETC*) {
    return E_INVALIDARG;
}

HRESULT STDMETHODCALLTYPE DataObject::SetData(FORMATETC*, STGMEDIUM*, BOOL) {
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE DataObject::EnumFormatEtc(DWORD, IEnumFORMATETC** formats) {
    *formats = nullptr;
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE DataObject::DAdvise(FORMATETC*, DWORD, IAdviseSink*, DWORD*) {
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE DataObject::DUnadvise(DWORD) {
    return OLE_E_ADVISENOTSUPPORTED;
}

HRESULT STDMETHODCALLTYPE DataObject::EnumDAdvise(IEnumSTATDATA** connections) {
    *connections = nullptr;
    return OLE_E_ADVISENOTSUPPORTED;
}
