#include "tests/registry/TestKey.h"

#include <algorithm>
#include <cstring>

namespace {

static_assert(sizeof(RegistryKey) == 2 * sizeof(void*), "table pointer, record");

// The record behind the one member: the handle, then the count.
struct Record {
    HKEY key;
    int count;
};

const Record& RecordOf(const RegistryKey& key) {
    const Record* record = nullptr;
    std::memcpy(&record, reinterpret_cast<const char*>(&key) + sizeof(void*), sizeof record);
    return *record;
}

bool IsOpen(HKEY key) {
    return RegFlushKey(key) == ERROR_SUCCESS;
}

} // namespace

TEST_CASE("copies share one key and the last one closes it") {
    const TestKey test;
    RegistryKey first = test.Open();
    const HKEY handle = RecordOf(first).key;
    RegistryKey third;
    {
        const RegistryKey second(first);
        third = second;
        third = *&third;
        CHECK(RecordOf(third).count == 3);
        CHECK((first == second && second == third));
    }
    CHECK_FALSE(first == test.Open());
    CHECK_FALSE(RegistryKey() == RegistryKey());
    first.Close();
    CHECK_FALSE(first.IsValid());
    CHECK_FALSE(first == third);
    CHECK(third.IsValid());
    CHECK(RecordOf(third).count == 1);
    CHECK(IsOpen(handle));
    SetLastError(4711);
    third = RegistryKey();
    CHECK(GetLastError() == 4711);
    CHECK_FALSE(IsOpen(handle));
}

TEST_CASE("keys are made, found, listed and deleted by name") {
    const TestKey test;
    RegistryKey key = test.Open();
    unsigned long disposition = ~0ul;
    CHECK(key.CreateSubkey(u"a\\b"_w, 0, KEY_READ, &disposition).IsValid());
    CHECK(disposition == REG_CREATED_NEW_KEY);
    CHECK(key.CreateSubkey(u"A"_w, 0, KEY_READ, &disposition).IsValid());
    CHECK(disposition == REG_OPENED_EXISTING_KEY);
    RegistryKey reader = key.OpenSubkey(u"a"_w, KEY_READ);
    CHECK_FALSE(RegistryKey().CreateSubkey(u"c"_w, 0, KEY_READ, &disposition).IsValid());
    CHECK(disposition == REG_OPENED_EXISTING_KEY);
    CHECK(reader.SetString({}, u"x"_w) == ERROR_ACCESS_DENIED);
    CHECK_FALSE(key.OpenSubkey(u"missing"_w, KEY_READ).IsValid());

    CHECK(key.SetSubkey(u"new"_w, u"text\0cut"_w) == ERROR_SUCCESS);
    CHECK(key.SetSubkey(u""_w, u"own"_w) == ERROR_SUCCESS);
    CHECK(test.Stored("") == std::string("1:own\0", 6));
    CHECK(GetBytes(Key(test, "new"), "") == std::string("text\0", 5));

    CHECK(key.CreateSubkey(u"b"_w, 0, KEY_READ, nullptr).IsValid());
    std::vector<WideString> names = {u"before"_w};
    CHECK(key.GetSubkeyNames(names) == ERROR_SUCCESS);
    CHECK(names == std::vector<WideString>{u"before"_w, u"a"_w, u"b"_w, u"new"_w});
    CHECK((reader.GetSubkeyNames(names) == ERROR_SUCCESS && names.size() == 5));

    CHECK(key.DeleteSubkey(u"a"_w) == ERROR_ACCESS_DENIED);
    CHECK(key.DeleteSubkey(u"a\\b"_w) == ERROR_SUCCESS);
    CHECK(key.DeleteSubkey(u"a"_w) == ERROR_SUCCESS);
    CHECK(key.DeleteSubkey(u"a"_w) == ERROR_FILE_NOT_FOUND);
    CHECK(key.Flush() == ERROR_SUCCESS);
}

TEST_CASE("a connected root replaces the key held; a refusal keeps it") {
    const TestKey test;
    RegistryKey key = test.Open();
    const RegistryKey copy = key;
    CHECK(key.ConnectRegistry(u"\\\\no such computer"_w, HKEY_LOCAL_MACHINE) != ERROR_SUCCESS);
    CHECK(key == copy);
    CHECK(key.ConnectRegistry(u""_w, HKEY_LOCAL_MACHINE) == ERROR_SUCCESS);
    CHECK_FALSE(key == copy);
    CHECK(key.OpenSubkey(u"Software"_w, KEY_READ).IsValid());
    CHECK(copy.IsValid());
}

TEST_CASE("an object without a key passes on what the system says") {
    RegistryKey key;
    std::vector<WideString> names;
    WideString text = u"kept"_w;
    double number = 4.5;
    CHECK_FALSE(key.IsValid());
    const long answers[] = {
        key.GetString(u"x"_w, text), key.GetFloat(u"x"_w, number),    key.SetInteger(u"x"_w, 1),
        key.GetSubkeyNames(names),   key.GetAllStrings(names, names), key.DeleteMultipleValues(u"*"_w),
        key.DeleteValue(u"x"_w),     key.DeleteSubkey(u"x"_w),        key.Flush()};
    CHECK(std::count(std::begin(answers), std::end(answers), ERROR_INVALID_HANDLE) == 9);
    CHECK_FALSE(key.CreateSubkey(u"x"_w, 0, KEY_READ, nullptr).IsValid());
    CHECK_FALSE(key.OpenSubkey(u"x"_w, KEY_READ).IsValid());
    key.DeleteAllValues();
    key.Close();
    CHECK((text == u"kept"_w && number == 4.5 && names.empty()));
}
