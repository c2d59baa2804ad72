#pragma once

/// @file
/// The COM contract as far as the library needs it: identifiers and their texts, task memory, result codes, IUnknown
/// and IDataObject with the structures their signatures name; of automation, its strings, IDispatch and the exception
/// of failed calls. Slot order and values are those of the public COM headers. No COM runtime stands behind them.

#include <kelcore/platform/base.h>

#include <cstring>

typedef LONG HRESULT;
typedef WCHAR OLECHAR;
typedef OLECHAR* LPOLESTR;
typedef const OLECHAR* LPCOLESTR;

#define S_OK (static_cast<HRESULT>(0))
#define S_FALSE (static_cast<HRESULT>(1))
#define E_NOTIMPL (static_cast<HRESULT>(0x80004001u))
#define E_NOINTERFACE (static_cast<HRESULT>(0x80004002u))
#define E_POINTER (static_cast<HRESULT>(0x80004003u))
#define E_FAIL (static_cast<HRESULT>(0x80004005u))
#define E_OUTOFMEMORY (static_cast<HRESULT>(0x8007000Eu))
#define E_INVALIDARG (static_cast<HRESULT>(0x80070057u))
#define OLE_E_ADVISENOTSUPPORTED (static_cast<HRESULT>(0x80040003u))
#define SUCCEEDED(hr) (static_cast<HRESULT>(hr) >= 0)
#define FAILED(hr) (static_cast<HRESULT>(hr) < 0)

typedef struct _GUID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
} GUID, IID, CLSID;

#define REFGUID const GUID&
#define REFIID const IID&
#define REFCLSID const CLSID&

/// Whether two identifiers agree in all 16 bytes.
inline bool IsEqualGUID(REFGUID a, REFGUID b) {
    return std::memcmp(&a, &b, sizeof(GUID)) == 0;
}
#define IsEqualIID(a, b) IsEqualGUID(a, b)
#define IsEqualCLSID(a, b) IsEqualGUID(a, b)
inline bool operator==(REFGUID a, REFGUID b) {
    return IsEqualGUID(a, b);
}
inline bool operator!=(REFGUID a, REFGUID b) {
    return !IsEqualGUID(a, b);
}

/// {00000000-0000-0000-C000-000000000046}
extern "C" KELPLATFORM_API const IID IID_IUnknown;
/// {0000010E-0000-0000-C000-000000000046}
extern "C" KELPLATFORM_API const IID IID_IDataObject;
/// {00020400-0000-0000-C000-000000000046}
extern "C" KELPLATFORM_API const IID IID_IDispatch;
/// All zero.
extern "C" KELPLATFORM_API const IID GUID_NULL;
#define IID_NULL GUID_NULL

extern "C" {

/// Memory that one module allocates and another frees.
/// @return a block of at least @p bytes bytes, none of them included; null when there is no memory.
KELPLATFORM_API LPVOID WINAPI CoTaskMemAlloc(SIZE_T bytes);

/// Frees a block of CoTaskMemAlloc. Null is no block, and fine.
KELPLATFORM_API void WINAPI CoTaskMemFree(LPVOID memory);

/// Spells an identifier: 38 units with braces and capital letters, as in {0000010E-0000-0000-C000-000000000046}, and a
/// terminator.
/// @param text receives the text, which the caller frees with CoTaskMemFree; null on failure.
/// @return S_OK, E_OUTOFMEMORY, or E_INVALIDARG for a null @p text.
KELPLATFORM_API HRESULT WINAPI StringFromCLSID(REFCLSID clsid, LPOLESTR* text);

/// Spells an identifier as StringFromCLSID does, into a buffer of @p count units.
/// @return the units written, the terminator included: 39, or 0 if they do not fit.
KELPLATFORM_API int WINAPI StringFromGUID2(REFGUID guid, LPOLESTR text, int count);

} // extern "C"

struct IUnknown {
    virtual HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) = 0;
    virtual ULONG STDMETHODCALLTYPE AddRef() = 0;
    virtual ULONG STDMETHODCALLTYPE Release() = 0;
};

typedef WORD CLIPFORMAT;

typedef struct tagDVTARGETDEVICE {
    DWORD tdSize;
    WORD tdDriverNameOffset;
    WORD tdDeviceNameOffset;
    WORD tdPortNameOffset;
    WORD tdExtDevmodeOffset;
    BYTE tdData[1];
} DVTARGETDEVICE;

typedef struct tagFORMATETC {
    CLIPFORMAT cfFormat;
    DVTARGETDEVICE* ptd;
    DWORD dwAspect;
    LONG lindex;
    DWORD tymed;
} FORMATETC;

/// The handle of any medium; only the members that need no further types of the host are named.
typedef struct tagSTGMEDIUM {
    DWORD tymed;
    union {
        void* hGlobal;
        WCHAR* lpszFileName;
        void* pstm;
        void* pstg;
    };
    IUnknown* pUnkForRelease;
} STGMEDIUM;

struct IEnumFORMATETC;
struct IEnumSTATDATA;
struct IAdviseSink;

struct IDataObject : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetData(FORMATETC* format, STGMEDIUM* medium) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetDataHere(FORMATETC* format, STGMEDIUM* medium) = 0;
    virtual HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC* format) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetCanonicalFormatEtc(FORMATETC* in, FORMATETC* out) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetData(FORMATETC* format, STGMEDIUM* medium, BOOL release) = 0;
    virtual HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD direction, IEnumFORMATETC** formats) = 0;
    virtual HRESULT STDMETHODCALLTYPE DAdvise(FORMATETC* format, DWORD flags, IAdviseSink* sink, DWORD* connection) = 0;
    virtual HRESULT STDMETHODCALLTYPE DUnadvise(DWORD connection) = 0;
    virtual HRESULT STDMETHODCALLTYPE EnumDAdvise(IEnumSTATDATA** connections) = 0;
};

/// @name Strings of automation
/// A BSTR points to the first unit of a text that carries its length before it and a terminator behind it; the text may
/// hold NUL units. Who is given one by a call that makes it frees it.
/// @{
typedef OLECHAR* BSTR;

extern "C" {

/// A copy of @p text up to its terminator. @return null when there is no memory, and for a null @p text.
KELPLATFORM_API BSTR WINAPI SysAllocString(const OLECHAR* text);

/// A copy of @p count units, whatever they are; room for that many without content if @p text is null.
/// @return null when there is no memory.
KELPLATFORM_API BSTR WINAPI SysAllocStringLen(const OLECHAR* text, UINT count);

/// Frees a string. Null is no string, and fine.
KELPLATFORM_API void WINAPI SysFreeString(BSTR string);

/// The number of units without the terminator, 0 for null.
KELPLATFORM_API UINT WINAPI SysStringLen(BSTR string);

} // extern "C"
/// @}

typedef LONG DISPID;
typedef WORD VARTYPE;
typedef short VARIANT_BOOL;

/// @name Kinds of values
/// @{
#define VT_EMPTY 0
#define VT_I2 2
#define VT_I4 3
#define VT_R4 4
#define VT_R8 5
#define VT_BSTR 8
#define VT_DISPATCH 9
#define VT_BOOL 11
#define VT_UNKNOWN 13
/// @}

#define DISPATCH_METHOD 0x1

struct IDispatch;

/// A value with its kind; the kinds listed above alone have members.
typedef struct tagVARIANT {
    VARTYPE vt;
    WORD wReserved1;
    WORD wReserved2;
    WORD wReserved3;
    union {
        SHORT iVal;
        LONG lVal;
        float fltVal;
        double dblVal;
        VARIANT_BOOL boolVal;
        BSTR bstrVal;
        IUnknown* punkVal;
        IDispatch* pdispVal;
    };
} VARIANT, VARIANTARG;

/// The arguments of a call, the last one first.
typedef struct tagDISPPARAMS {
    VARIANTARG* rgvarg;
    DISPID* rgdispidNamedArgs;
    UINT cArgs;
    UINT cNamedArgs;
} DISPPARAMS;

struct tagEXCEPINFO;
typedef tagEXCEPINFO EXCEPINFO;
struct ITypeInfo;
struct IErrorInfo;

/// Operations by number.
struct IDispatch : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID language, ITypeInfo** info) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID language,
                                                    DISPID* ids) = 0;
    virtual HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID reserved, LCID language, WORD flags,
                                             DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                                             UINT* argument) = 0;
};

/// What is thrown, by value, for a call that answered a negative result.
class KELPLATFORM_API _com_error {
public:
    /// @param information must be null: error objects do not exist here.
    _com_error(HRESULT result, IErrorInfo* information = nullptr, bool addReference = false) noexcept;
    _com_error(const _com_error& other) noexcept;
    _com_error& operator=(const _com_error& other) noexcept;
    virtual ~_com_error() noexcept;

    /// The result of the call.
    HRESULT Error() const noexcept;
    /// The system's message for the result, without the line break at its end; "Unknown error 0x80001234" if it has
    /// none. It lives as long as this object; null when there is no memory.
    const char* ErrorMessage() const noexcept;

private:
    HRESULT m_result;
    mutable char* m_message;
};
