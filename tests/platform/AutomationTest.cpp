#include <doctest/doctest.h>
#include <kelcore/platform.h>

#include <cstring>
#include <string>

// Strings and errors of automation, and the plain calls around a registered COM class.

TEST_CASE("strings of automation carry their length and a terminator") {
    const OLECHAR text[] = {'a', 0, 'b'};
    const BSTR whole = SysAllocStringLen(text, 3);
    CHECK(SysStringLen(whole) == 3);
    CHECK(std::memcmp(whole, text, sizeof text) == 0);
    CHECK(whole[3] == 0);
    const BSTR first = SysAllocString(whole);
    CHECK(SysStringLen(first) == 1);
    const BSTR empty = SysAllocStringLen(nullptr, 0);
    CHECK(empty != nullptr);
    CHECK(SysStringLen(empty) == 0);
    CHECK(SysStringLen(nullptr) == 0);
    CHECK(SysAllocString(nullptr) == nullptr);
    for (const BSTR string : {whole, first, empty, BSTR()})
        SysFreeString(string);
}

TEST_CASE("the error of a failed call tells its result, copies too") {
    try {
        throw _com_error(static_cast<HRESULT>(0x80041234u));
    } catch (const _com_error& thrown) {
        const _com_error copy(thrown);
        CHECK(copy.Error() == static_cast<HRESULT>(0x80041234u));
        CHECK(std::string(copy.ErrorMessage()) == "IDispatch error #4148");
    }
    CHECK(std::string(_com_error(static_cast<HRESULT>(0x80AB1234u)).ErrorMessage()) == "Unknown error 0x80AB1234");
    const _com_error known(E_OUTOFMEMORY);
    const std::string message = known.ErrorMessage();
    CHECK(message.size() > 5);
    CHECK(message.back() != '\n');
}

TEST_CASE("the default value of a subkey is read as text, empty where there is none") {
    HKEY key = nullptr;
    REQUIRE(RegCreateKeyExA(HKEY_CURRENT_USER, "Software\\KelCoreAutomation\\Sub", 0, nullptr, 0, KEY_ALL_ACCESS,
                            nullptr, &key, nullptr) == ERROR_SUCCESS);
    RegCloseKey(key);
    REQUIRE(RegOpenKeyA(HKEY_CURRENT_USER, "Software\\KelCoreAutomation", &key) == ERROR_SUCCESS);
    const struct {
        const char* subkey;
        const char* value; // null for none
        LONG room;
        LONG code;
        LONG size;
    } rows[] = {
        {"Missing", nullptr, 20, ERROR_FILE_NOT_FOUND, 20},
        {"Sub", nullptr, 20, ERROR_SUCCESS, 1},
        {"Sub", "hello", 20, ERROR_SUCCESS, 6},
        {"Sub", "hello", 6, ERROR_SUCCESS, 6},
        {"Sub", "hello", 5, ERROR_MORE_DATA, 6},
    };
    for (const auto& row : rows) {
        CAPTURE(row.room);
        if (row.value)
            RegSetValueA(key, row.subkey, REG_SZ, row.value, 0);
        char text[20] = {};
        LONG size = row.room;
        CHECK(RegQueryValueA(key, row.subkey, text, &size) == row.code);
        CHECK(size == row.size);
        CHECK(std::string(text) == (row.code == ERROR_SUCCESS && row.value ? row.value : ""));
    }
    HKEY same = nullptr;
    CHECK(RegOpenKeyA(key, "", &same) == ERROR_SUCCESS);
    CHECK(same == key);
    CHECK(RegOpenKeyA(key, "Missing", &same) == ERROR_FILE_NOT_FOUND);
    CHECK(same == nullptr);
    RegDeleteKeyA(key, "Sub");
    RegCloseKey(key);
    RegDeleteKeyA(HKEY_CURRENT_USER, "Software\\KelCoreAutomation");
}

TEST_CASE("a palette is selected in place of another, and changes nothing on the screen") {
    const HDC screen = GetDC(nullptr);
    const auto palette = static_cast<HPALETTE>(GetStockObject(DEFAULT_PALETTE));
    CHECK(SelectPalette(screen, palette, FALSE) == palette);
    CHECK(RealizePalette(screen) == 0);
    CHECK(SelectPalette(screen, nullptr, FALSE) == nullptr);
    CHECK(SelectPalette(screen, static_cast<HPALETTE>(GetStockObject(BLACK_BRUSH)), FALSE) == nullptr);
    CHECK(SelectPalette(nullptr, palette, FALSE) == nullptr);
    ReleaseDC(nullptr, screen);
}
