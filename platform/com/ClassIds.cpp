#include <kelcore/platform/com.h>

#include "platform/kernel/Faults.h"

#include <cstdlib>

namespace {

constexpr int kSpelledUnits = 39;

/// Appends the @p digits lowest hexadecimal digits of @p number, the highest first. @return the end.
WCHAR* Spell(std::uint32_t number, int digits, WCHAR* to) {
    while (digits-- != 0)
        *to++ = static_cast<unsigned char>("0123456789ABCDEF"[number >> 4 * digits & 0xF]);
    return to;
}

void Spell(REFGUID guid, WCHAR* to) {
    *to++ = '{';
    to = Spell(guid.Data1, 8, to);
    *to++ = '-';
    to = Spell(guid.Data2, 4, to);
    *to++ = '-';
    to = Spell(guid.Data3, 4, to);
    for (int i = 0; i != 8; ++i) {
        if (i == 0 || i == 2)
            *to++ = '-';
        to = Spell(guid.Data4[i], 2, to);
    }
    *to++ = '}';
    *to = 0;
}

} // namespace

LPVOID CoTaskMemAlloc(SIZE_T bytes) {
    // A block of no bytes is still a block.
    return std::malloc(bytes == 0 ? 1 : bytes);
}

void CoTaskMemFree(LPVOID memory) {
    std::free(memory);
}

HRESULT StringFromCLSID(REFCLSID clsid, LPOLESTR* text) {
    if (text == nullptr)
        return E_INVALIDARG;
    const bool fails = kel::platform::CallFails("StringFromCLSID");
    *text = fails ? nullptr : static_cast<LPOLESTR>(CoTaskMemAlloc(kSpelledUnits * sizeof(OLECHAR)));
    if (*text == nullptr)
        return E_OUTOFMEMORY;
    Spell(clsid, *text);
    return S_OK;
}

int StringFromGUID2(REFGUID guid, LPOLESTR text, int count) {
    if (count < kSpelledUnits)
        return 0;
    Spell(guid, text);
    return kSpelledUnits;
}
