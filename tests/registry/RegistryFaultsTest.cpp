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
        REQUIRE(RegSetValueA(test.Raw(), name, REG_SZ, "", 0) == ERROR_SUCCESS);
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
        {[](RegistryKey&) {
             return RegistryHelper::RegisterInprocServer32(kClass, u"x"_w) ? 0 : static_cast<long>(kError);
         },
         "StringFromCLSID RegCreateKeyExA ~RegCloseKey RegSetValueExA ~RegCloseKey "},
    };
    for (const Operation& operation : operations) {
        std::string calls;
        for (int nth = 1;; ++nth) {
            const std::string call = RunWithFault(operation, nth);
            if (call.empty())
                break;
            calls += call;
        }
        CHECK((calls == operation.calls || !kel::test::FaultsAvailable()));
    }
    RegistryHelper::UnregisterInprocServer32(kClass);
    RegistryHelper::UnregisterCLSID(kClass);
}

TEST_CASE("a failing first query leaves the target, a failing second one reads as zero bytes") {
    const TestKey test;
    Fill(test);
    RegistryKey key = test.Open();
    const WideString texts[] = {u"old"_w, u""_w, u"12"_w};
    const unsigned long numbers[] = {77, 0, 5};
    const std::string datas[] = {"old", std::string(3, '\0'), "abc"};
    for (const int nth : {0, 1, 2}) {
        CAPTURE(nth);
        const int expected = kel::test::FaultsAvailable() ? nth : 2;
        WideString text = texts[0];
        unsigned long number = numbers[0];
        std::string data = datas[0];
        kel::test::ArmFault(nth + 1, kError);
        key.GetString(u"s"_w, text);
        kel::test::ArmFault(nth + 1, kError);
        key.GetInteger(u"n"_w, number);
        kel::test::ArmFault(nth + 1, kError);
        key.GetBinary(u"b"_w, data);
        kel::test::DisarmFault();
        CHECK(text == texts[expected]);
        CHECK(number == numbers[expected]);
        CHECK(data == datas[expected]);
    }
    RegistryHelper::UnregisterCLSID(kClass);
}
