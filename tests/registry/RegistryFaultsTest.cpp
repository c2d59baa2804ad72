#include "tests/registry/TestKey.h"
#include "tests/support/Faults.h"

#include <functional>

namespace {

constexpr DWORD kError = ERROR_DISK_FULL;
constexpr GUID kClass = {0x4F1C07D2, 0x63B8, 0x4E21, {0x9A, 0x0C, 0x12, 0x34, 0x56, 0x78, 0x9A, 0xBD}};

struct Operation {
    std::function<long(RegistryKey& key)> run;
    // The platform calls of a run, a '~' before those whose failure is not looked at.
    std::string calls;
};

std::function<long(RegistryKey&)> Answer(bool (*function)(const GUID&)) {
    return [=](RegistryKey&) { return function(kClass) ? 0 : static_cast<long>(kError); };
}

long CodeOf(const RegistryKey& made) {
    return made.IsValid() ? 0 : static_cast<long>(kError);
}

// What stands before every run: two subkeys, values of three types, a class without a server.
void Fill(const TestKey& test) {
    RegistryHelper::UnregisterInprocServer32(kClass);
    RegistryHelper::RegisterCLSID(kClass);
    for (const char* name : {"a", "b"})
        REQUIRE(RegSetValueA(test, name, REG_SZ, "", 0) == ERROR_SUCCESS);
    test.Store("s", REG_SZ, std::string("12\0", 3));
    test.Store("n", REG_DWORD, "\5\0\0\0");
    test.Store("b", REG_BINARY, "abc");
}

// Runs @p operation with call number @p nth failing. @return that call, marked as in Operation; empty if none did.
std::string RunWithFault(const Operation& operation, int nth) {
    const TestKey test;
    Fill(test);
    RegistryKey key = test.Open();
    const std::size_t handles = kel::test::OpenHandles();
    kel::test::ArmFault(nth, kError);
    const long result = operation.run(key);
    const bool met = kel::test::DisarmFault();
    CAPTURE(nth);
    CHECK(kel::test::OpenHandles() == handles);
    CHECK((result == 0 || (met && result == static_cast<long>(kError))));
    return met ? (result == 0 ? "~" : "") + std::string(kel::test::FaultedCall()) + " " : "";
}

} // namespace

TEST_CASE("members make exactly their calls, and answer a failing one with its code") {
    std::vector<WideString> names, texts;
    std::vector<unsigned long> numbers;
    WideString text;
    unsigned long number = 0;
    bool flag = false;
    __int64 wide = 0;
    double real = 0;
    std::string bytes;
    const std::string getter = "RegQueryValueExA ~RegQueryValueExA ";
    const std::string three = "RegQueryInfoKeyA RegEnumValueA RegEnumValueA RegEnumValueA ";
    const Operation operations[] = {
        {[&](RegistryKey& key) { return key.GetString(u"s"_w, text); }, getter},
        {[&](RegistryKey& key) { return key.GetString(u"n"_w, text); }, "RegQueryValueExA "},
        {[&](RegistryKey& key) { return key.GetInteger(u"n"_w, number); }, getter},
        {[&](RegistryKey& key) { return key.GetBoolean(u"n"_w, flag); }, getter},
        {[&](RegistryKey& key) { return key.GetInt64(u"s"_w, wide); }, getter},
        {[&](RegistryKey& key) { return key.GetFloat(u"s"_w, real); }, getter},
        {[&](RegistryKey& key) { return key.GetBinary(u"b"_w, bytes); }, getter},
        {[](RegistryKey& key) { return key.SetString(u"s"_w, u"x"_w); }, "RegSetValueExA "},
        {[](RegistryKey& key) { return key.SetFloat(u"s"_w, 1); }, "RegSetValueExA "},
        {[](RegistryKey& key) { return key.SetSubkey(u"a"_w, u"x"_w); }, "RegSetValueA "},
        {[](RegistryKey& key) { return key.DeleteValue(u"s"_w); }, "RegDeleteValueA "},
        {[](RegistryKey& key) { return key.DeleteSubkey(u"a"_w); }, "RegDeleteKeyA "},
        {[](RegistryKey& key) { return key.Flush(); }, "RegFlushKey "},
        {[](RegistryKey& key) { return CodeOf(key.OpenSubkey(u"a"_w, KEY_READ)); }, "RegOpenKeyExA ~RegCloseKey "},
        {[](RegistryKey& key) { return CodeOf(key.CreateSubkey(u"b"_w, 0, KEY_READ, nullptr)); },
         "RegCreateKeyExA ~RegCloseKey "},
        {[](RegistryKey& key) { return RegistryKey(key).ConnectRegistry(u""_w, HKEY_LOCAL_MACHINE); },
         "RegConnectRegistryA ~RegCloseKey "},
        {[&](RegistryKey& key) { return key.GetSubkeyNames(names); }, "RegQueryInfoKeyA RegEnumKeyExA RegEnumKeyExA "},
        {[&](RegistryKey& key) { return key.GetAllStrings(names, texts); }, three},
        {[&](RegistryKey& key) { return key.GetAllIntegers(names, numbers); }, three},
        {[](RegistryKey& key) { return key.DeleteMultipleValues(u"?"_w); },
         "RegQueryInfoKeyA RegEnumValueA RegDeleteValueA RegEnumValueA RegDeleteValueA RegEnumValueA RegDeleteValueA "},
        {[](RegistryKey& key) { return key.DeleteAllValues(), 0; },
         "~RegEnumValueA ~RegDeleteValueA ~RegEnumValueA ~RegDeleteValueA ~RegEnumValueA ~RegDeleteValueA "
         "~RegEnumValueA "},
        {Answer(RegistryHelper::RegisterCLSID), "StringFromCLSID RegCreateKeyExA ~RegCloseKey ~RegCloseKey "},
        {Answer(RegistryHelper::UnregisterCLSID), "StringFromCLSID RegDeleteKeyA ~RegCloseKey "},
        {Answer([](const GUID& clsid) { return RegistryHelper::RegisterInprocServer32(clsid, u"x"_w); }),
         "StringFromCLSID RegCreateKeyExA ~RegCloseKey RegSetValueExA ~RegCloseKey "},
    };
    for (const Operation& operation : operations) {
        std::string calls, call;
        for (int nth = 1; !(call = RunWithFault(operation, nth)).empty(); ++nth)
            calls += call;
        CHECK((calls == operation.calls || !kel::test::FaultsAvailable()));
    }
    RegistryHelper::UnregisterInprocServer32(kClass);
    RegistryHelper::UnregisterCLSID(kClass);
}

TEST_CASE("a failing first query leaves the target, a failing second one reads as zero bytes") {
    const TestKey test;
    Fill(test);
    RegistryKey key = test.Open();
    const auto reads = [](auto get, auto kept, auto zero, auto stored) {
        for (const int nth : {1, 2, 3}) {
            auto value = kept;
            kel::test::ArmFault(nth, kError);
            get(value);
            kel::test::DisarmFault();
            const bool fails = kel::test::FaultsAvailable() && nth < 3;
            CHECK_MESSAGE(value == (!fails ? stored : nth == 1 ? kept : zero), nth);
        }
    };
    reads([&](auto& text) { key.GetString(u"s"_w, text); }, u"old"_w, u""_w, u"12"_w);
    reads([&](auto& number) { key.GetInteger(u"n"_w, number); }, 77ul, 0ul, 5ul);
    reads([&](auto& data) { key.GetBinary(u"b"_w, data); }, std::string("old"), std::string(3, 0), std::string("abc"));
    RegistryHelper::UnregisterCLSID(kClass);
}
