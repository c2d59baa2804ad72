#pragma once

/// @file
/// The COM contract as far as the library needs it: identifiers and their texts, task memory, result codes, IUnknown
/// and IDataObject with the structures their signatures name. Slot order and values are those of the public COM
/// headers. No COM runtime stands behind them.

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
