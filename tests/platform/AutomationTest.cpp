#include <doctest/doctest.h>
#include <kelcore/platform.h>

#include <cstring>
#include <string>

// Strings and errors of automation, identifiers of classes, palettes of pictures.

TEST_CASE("strings of automation carry their length and a terminator") {
    const OLECHAR text[] = {'a', 0, 'b'};
    const BSTR whole = SysAllocStringLen(text, 3);
    CHECK(SysStringLen(whole) == 3);
    CHECK(std::memcmp(whole, text, sizeof text) == 0);
    CHECK(whole[3] == 0);
    const BSTR first = SysAllocString(whole);
    CHECK(SysStringLen(first) == 1);
    const BSTR empty = SysAllocStringLen(nullptr, 0);
    CHECK((empty && SysStringLen(empty) == 0 && SysStringLen(nullptr) == 0));
    CHECK(SysAllocString(nullptr) == nullptr);
    for (const BSTR string : {whole, first, empty, BSTR()})
        SysFreeString(string);
}

TEST_CASE("the error of a failed call tells its result, copies too") {
    const _com_error error(static_cast<HRESULT>(0x80041234u)), copy(error);
    CHECK(copy.Error() == error.Error());
    CHECK(std::string(copy.ErrorMessage()) == "IDispatch error #4148");
    CHECK(std::string(_com_error(static_cast<HRESULT>(0x80AB1234u)).ErrorMessage()) == "Unknown error 0x80AB1234");
    const std::string known = _com_error(E_OUTOFMEMORY).ErrorMessage();
    CHECK((known.size() > 5 && known.back() != '\n'));
}

TEST_CASE("a class identifier is spelled in braces, into task memory or a buffer it fits") {
    const CLSID id = {0x01234567, 0x89AB, 0x00EF, {0xFE, 0x0C, 0xBA, 0x98, 0x07, 0x65, 0x43, 0x21}};
    const std::string text = "{01234567-89AB-00EF-FE0C-BA9807654321}";
    LPOLESTR spelled = nullptr;
    REQUIRE(StringFromCLSID(id, &spelled) == S_OK);
    CHECK(std::string(spelled, spelled + 39) == text + '\0');
    CoTaskMemFree(spelled);
    CoTaskMemFree(nullptr);
    OLECHAR buffer[40] = {'#'};
    buffer[39] = '#';
    CHECK(StringFromGUID2(id, buffer, 38) == 0);
    CHECK(buffer[0] == '#');
    CHECK(StringFromGUID2(id, buffer, 39) == 39);
    CHECK(std::string(buffer, buffer + 40) == text + '\0' + '#');
}

TEST_CASE("a palette is selected in place of another, and changes nothing on the screen") {
    const HDC screen = GetDC(nullptr);
    const auto palette = static_cast<HPALETTE>(GetStockObject(DEFAULT_PALETTE));
    CHECK(SelectPalette(screen, palette, FALSE) == palette);
    CHECK(RealizePalette(screen) == 0);
    for (const HGDIOBJ none : {HGDIOBJ{}, GetStockObject(BLACK_BRUSH)})
        CHECK(SelectPalette(screen, static_cast<HPALETTE>(none), FALSE) == nullptr);
    ReleaseDC(nullptr, screen);
}
