#include "tests/support/Text.h"

#include <doctest/doctest.h>
#include <kelcore/registry.h>

TEST_CASE("a class is announced and withdrawn, its server before itself") {
    const GUID clsid = {0x4F1C07D2, 0x63B8, 0x4E21, {0x9A, 0x0C, 0x12, 0x34, 0x56, 0x78, 0x9A, 0xBC}};
    const WideString path = u"Software\\Classes\\CLSID\\{4F1C07D2-63B8-4E21-9A0C-123456789ABC}"_w;
    const auto opened = [](const WideString& name) {
        return RegistryKey(HKEY_LOCAL_MACHINE).OpenSubkey(name, KEY_READ);
    };
    CHECK_FALSE(RegistryHelper::UnregisterCLSID(clsid));
    CHECK_FALSE(RegistryHelper::UnregisterInprocServer32(clsid));
    CHECK(RegistryHelper::RegisterCLSID(clsid));
    CHECK(RegistryHelper::RegisterCLSID(clsid));
    CHECK(opened(path).IsValid());
    CHECK(RegistryHelper::RegisterInprocServer32(clsid, u"C:\\x\\srv.dll"_w));
    std::vector<WideString> names;
    std::vector<WideString> texts;
    CHECK(opened(path + u"\\InprocServer32"_w).GetAllStrings(names, texts) == ERROR_SUCCESS);
    CHECK(names == std::vector<WideString>{u""_w});
    CHECK(texts == std::vector<WideString>{u"C:\\x\\srv.dll"_w});

    CHECK_FALSE(RegistryHelper::UnregisterCLSID(clsid));
    CHECK(RegistryHelper::UnregisterInprocServer32(clsid));
    CHECK(RegistryHelper::UnregisterCLSID(clsid));
    CHECK_FALSE(opened(path).IsValid());
}
