#pragma once

/// @file
/// The reference-counted object base.

#include <kelcore/export.h>
#include <kelcore/platform.h>

/// Reference-counted base of heap objects, the COM counting contract without a COM runtime.
///
/// A new object has the count 1, which its creator owns. Derive virtually, so that a class that reaches this base along
/// several paths has one IUnknown and one count. The count is a plain integer: an object is referenced and released by
/// one thread at a time.
class KELCORE_API KelUnknown : virtual public IUnknown {
public:
    /// Starts with the count 1.
    KelUnknown();
    /// Copies the source's count as a plain member. A class whose copies shall start at 1 builds this base with the
    /// default constructor in its own copy constructor.
    KelUnknown(const KelUnknown& other);
    /// Copies the source's count as a plain member.
    KelUnknown& operator=(const KelUnknown& other);
    virtual ~KelUnknown();

    /// Refuses every identifier, IID_IUnknown included.
    /// @param object receives null.
    /// @return E_NOINTERFACE.
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
    /// Raises the count. @return the new count.
    ULONG STDMETHODCALLTYPE AddRef() override;
    /// Lowers the count and deletes the object through its virtual destructor when it reaches 0. @return the new count.
    ULONG STDMETHODCALLTYPE Release() override;

    /// Deletes the object at once, whatever its count; does nothing on a null pointer. For objects whose only owner is
    /// the caller.
    void Destroy();

private:
    unsigned __int32 m_count;
};

/// A do-nothing IDataObject: every data method refuses, a derived class overrides those it supports. It carries a count
/// of its own with the rules of KelUnknown.
class KELCORE_API DataObject : virtual public IDataObject {
public:
    /// Starts with the count 1.
    DataObject();
    virtual ~DataObject();

    /// Answers IID_IUnknown and IID_IDataObject with the IDataObject pointer and IID_KelDataObject with the DataObject
    /// pointer itself; each success adds a reference.
    /// @return S_OK, or E_NOINTERFACE with null in @p object.
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
    /// Raises the count. @return the new count.
    ULONG STDMETHODCALLTYPE AddRef() override;
    /// Lowers the count and deletes the object through its virtual destructor when it reaches 0. @return the new count.
    ULONG STDMETHODCALLTYPE Release() override;

    /// @return E_INVALIDARG.
    HRESULT STDMETHODCALLTYPE GetData(FORMATETC* format, STGMEDIUM* medium) override;
    /// @return E_INVALIDARG.
    HRESULT STDMETHODCALLTYPE GetDataHere(FORMATETC* format, STGMEDIUM* medium) override;
    /// @return E_INVALIDARG.
    HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC* format) override;
    /// @return E_INVALIDARG.
    HRESULT STDMETHODCALLTYPE GetCanonicalFormatEtc(FORMATETC* in, FORMATETC* out) override;
    /// @return E_NOTIMPL.
    HRESULT STDMETHODCALLTYPE SetData(FORMATETC* format, STGMEDIUM* medium, BOOL release) override;
    /// Sets @p formats to null. @return E_NOTIMPL.
    HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD direction, IEnumFORMATETC** formats) override;
    /// @return E_NOTIMPL.
    HRESULT STDMETHODCALLTYPE DAdvise(FORMATETC* format, DWORD flags, IAdviseSink* sink, DWORD* connection) override;
    /// @return OLE_E_ADVISENOTSUPPORTED.
    HRESULT STDMETHODCALLTYPE DUnadvise(DWORD connection) override;
    /// Sets @p connections to null. @return OLE_E_ADVISENOTSUPPORTED.
    HRESULT STDMETHODCALLTYPE EnumDAdvise(IEnumSTATDATA** connections) override;

private:
    unsigned __int32 m_count;
};

/// {7CADFC7D-B1F1-4010-BA9C-C879E11AB6B1}: asks a DataObject for itself, so that a module recognises its own data
/// objects behind an IDataObject pointer.
extern KELCORE_API const IID IID_KelDataObject;
