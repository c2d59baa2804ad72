#include "Workplace.h"

#include "tests/support/RegistryKeys.h"
#include "tests/support/Threads.h"

#include <atomic>
#include <functional>
#include <set>

namespace {

const HKEY kForeign = reinterpret_cast<HKEY>(std::uintptr_t{0x7654320});

LONG Open(HKEY below, const char* name, REGSAM access = KEY_READ) {
    HKEY key = nullptr;
    const LONG code = RegOpenKeyExA(below, name, 0, access, &key);
    const Key closed(key);
    CHECK((code == 0) == (key != nullptr));
    return code;
}

LONG Create(HKEY below, const char* name, DWORD options = 0) {
    HKEY key = nullptr;
    const LONG code = RegCreateKeyExA(below, name, 0, nullptr, options, KEY_ALL_ACCESS, nullptr, &key, nullptr);
    const Key closed(key);
    return code;
}

// The code in what ValueAt and SubkeyAt give.
LONG CodeOf(const std::string& answer) {
    return answer[0] == '<' ? std::stol(answer.substr(1)) : 0;
}

// Every call that works on an open key, the rights that it needs, and its result on a good key.
struct Call {
    const char* name;
    std::function<LONG(HKEY)> run;
    DWORD rights;
    LONG good = 0;
};

const Call kCalls[] = {
    {"query", [](HKEY key) { return RegQueryValueExA(key, "v", nullptr, nullptr, nullptr, nullptr); }, KEY_QUERY_VALUE},
    {"enumerate values", [](HKEY key) { return CodeOf(ValueAt(key, 0)); }, KEY_QUERY_VALUE},
    {"enumerate keys", [](HKEY key) { return CodeOf(SubkeyAt(key, 0)); }, KEY_ENUMERATE_SUB_KEYS},
    {"set", [](HKEY key) { return SetBytes(key, "v", "x"); }, KEY_SET_VALUE},
    {"set default", [](HKEY key) { return RegSetValueA(key, nullptr, REG_SZ, "x", 0); }, KEY_SET_VALUE},
    {"set default below", [](HKEY key) { return RegSetValueA(key, "sub", REG_SZ, "x", 0); }, 0},
    {"delete value", [](HKEY key) { return RegDeleteValueA(key, "none"); }, KEY_SET_VALUE, ERROR_FILE_NOT_FOUND},
    {"open", [](HKEY key) { return Open(key, "sub"); }, 0},
    {"create", [](HKEY key) { return Create(key, "new\\newer"); }, 0},
    {"delete key", [](HKEY key) { return RegDeleteKeyA(key, "new\\newer"); }, 0},
    {"flush", [](HKEY key) { return RegFlushKey(key); }, 0},
};

} // namespace

TEST_CASE("paths of keys") {
    const EmptyKey root;
    CHECK(Create(root, "a\\Bee\\c") == 0);
    CHECK(SubkeyAt(Key(root, "a"), 0) == "Bee");
    const struct {
        const char* path;
        LONG code;
    } rows[] = {{"a\\bee\\c", 0}, {"A\\BEE\\\\C\\\\", 0}, {"", 0},     {nullptr, 0}, {"a\\b", 2},
                {"b\\bee", 2},    {"\\a", 161},           {"\\", 161}, {"a/bee", 2}, {" a", 2}};
    for (const auto& row : rows)
        CHECK_MESSAGE(Open(root, row.path) == row.code, row.path);
    CHECK(Create(root, "\\x") == ERROR_BAD_PATHNAME);
    CHECK(RegDeleteKeyA(root, "a\\none") == ERROR_FILE_NOT_FOUND);
    CHECK(RegDeleteKeyA(root, nullptr) == ERROR_INVALID_PARAMETER);
    CHECK(RegDeleteKeyA(Key(root, "a\\bee\\c"), "") == 0);
    CHECK(Open(root, "a\\bee\\c") == ERROR_FILE_NOT_FOUND);
}

TEST_CASE("an open key has the rights it was opened with") {
    const EmptyKey root;
    CHECK(SetBytes(root, "v", "x") == 0);
    CHECK(Create(root, "sub") == 0);
    const struct {
        REGSAM access;
        DWORD rights;
    } rows[] = {{KEY_QUERY_VALUE, 1},          {KEY_SET_VALUE, 2},
                {KEY_ENUMERATE_SUB_KEYS, 8},   {GENERIC_READ, KEY_READ},
                {GENERIC_WRITE, KEY_WRITE},    {KEY_ALL_ACCESS, KEY_ALL_ACCESS},
                {GENERIC_ALL, KEY_ALL_ACCESS}, {MAXIMUM_ALLOWED, KEY_ALL_ACCESS}};
    for (const auto& row : rows)
        for (const Call& call : kCalls) {
            CAPTURE(row.access);
            CAPTURE(call.name);
            const Key key(root, "", row.access);
            CHECK(call.run(key) == (call.rights & ~row.rights ? ERROR_ACCESS_DENIED : call.good));
        }
    for (const Call& call : kCalls) {
        CAPTURE(call.name);
        for (const HKEY key : {HKEY{nullptr}, kForeign})
            CHECK(call.run(key) == ERROR_INVALID_HANDLE);
        if (kOnLayer || call.rights != KEY_QUERY_VALUE)
            CHECK(call.run(HKEY_PERFORMANCE_DATA) == ERROR_INVALID_HANDLE);
    }
}

TEST_CASE("a deleted key refuses everything, also when there is a new one of its name") {
    const EmptyKey root;
    const Key deleted(root, "sub");
    CHECK(RegDeleteKeyA(root, "sub") == 0);
    CHECK(RegQueryInfoKeyA(deleted, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                           nullptr, nullptr) == ERROR_KEY_DELETED);
    for (const bool again : {false, true}) {
        CHECK((!again || Create(root, "sub") == 0));
        for (const Call& call : kCalls)
            CHECK_MESSAGE(call.run(deleted) == ERROR_KEY_DELETED, call.name);
    }
}

TEST_CASE("values of all types come back as they were set, under names in either case") {
    const EmptyKey root;
    const std::string texts[] = {"", std::string("text\0", 5), std::string("a\0b\0\0", 5),
                                 StdW2A(u"\u00E4\u00D6"_w) + '\0', std::string(100000, 'l') + '\0'};
    const auto keeps = [&](DWORD type, const std::string& data) {
        INFO(type, " ", data.substr(0, 10));
        CHECK(SetBytes(root, StdW2A(u"a\u00C4"_w).c_str(), data, type) == 0);
        DWORD stored = 99;
        CHECK((GetBytes(root, StdW2A(u"A\u00E4"_w).c_str(), &stored) == data));
        CHECK(stored == type);
    };
    for (const DWORD type : {0, 1, 2, 3, 4, 5, 6, 7, 8, 11, 0x12345}) {
        for (const std::string& data : texts)
            keeps(type, data);
        if (type != REG_SZ && type != REG_EXPAND_SZ && type != REG_MULTI_SZ)
            keeps(type, std::string("\0\xFF\x80", 3));
    }
    CHECK(RegDeleteValueA(root, StdW2A(u"A\u00E4"_w).c_str()) == 0);
    CHECK(ValueAt(root, 0) == "<259>");
}

TEST_CASE("what a value's buffer may be") {
    const EmptyKey root;
    SetBytes(root, "s", std::string("hello\0", 6), REG_SZ);
    BYTE data[8] = "#######";
    const auto query = [&](BYTE* buffer, DWORD* size) {
        return RegQueryValueExA(root, "s", nullptr, nullptr, buffer, size);
    };
    for (const DWORD room : {0u, 1u, 5u}) {
        DWORD size = room;
        CHECK(query(data, &size) == ERROR_MORE_DATA);
        CHECK((size == 6 && data[0] == '#'));
    }
    DWORD size = 6;
    CHECK(query(data, &size) == 0);
    CHECK(query(data, nullptr) == ERROR_INVALID_PARAMETER);
    CHECK(query(nullptr, nullptr) == 0);
    // Without a terminator; there is room for one.
    CHECK(RegSetValueExA(root, "s", 0, REG_SZ, reinterpret_cast<const BYTE*>("opening"), 4) == 0);
    data[4] = '#';
    size = 5;
    CHECK(query(data, &size) == 0);
    CHECK((size == 4 && data[4] == 0));
    CHECK(RegSetValueExA(root, "s", 0, REG_BINARY, nullptr, 3) == ERROR_NOACCESS);
    CHECK(RegSetValueExA(root, "s", 0, REG_BINARY, nullptr, 0) == 0);
}

TEST_CASE("enumeration") {
    const EmptyKey root;
    const char* const names[] = {"zeta", "Alpha", "mid", "beta", "<259>"};
    for (int i = 0; i < 4; ++i)
        CHECK((SetBytes(root, names[i], names[i]) == 0 && Create(root, names[i]) == 0));
    const char* const sorted[] = {"Alpha", "beta", "mid", "zeta", "<259>"};
    std::set<std::string> values;
    for (DWORD i = 0; i < 5; ++i) {
        CHECK(SubkeyAt(root, i) == sorted[i]);
        CHECK((ValueAt(root, i) == names[i] || !kOnLayer)); // in the order of their making
        values.insert(ValueAt(root, i));
    }
    CHECK(values == std::set<std::string>(sorted, sorted + 5));

    char name[8] = "#######";
    BYTE data[8];
    DWORD size = 5; // of Alpha, without room for the terminator
    CHECK(RegEnumKeyExA(root, 0, name, &size, nullptr, nullptr, nullptr, nullptr) == ERROR_MORE_DATA);
    CHECK(name[0] == '#');
    size = sizeof name;
    DWORD dataSize = 2;
    DWORD type = 99;
    CHECK(RegEnumValueA(root, 0, name, &size, nullptr, &type, data, &dataSize) == ERROR_MORE_DATA);
    CHECK(dataSize == ValueAt(root, 0).size());
    size = 3;
    CHECK(RegEnumValueA(root, 0, name, &size, nullptr, nullptr, nullptr, nullptr) == ERROR_MORE_DATA);

    DWORD subkeys = 0, longestKey = 0, count = 0, longestName = 0, longestData = 0;
    FILETIME before = {}, after = {};
    const auto ask = [&](FILETIME& time) {
        return RegQueryInfoKeyA(root, nullptr, nullptr, nullptr, &subkeys, &longestKey, nullptr, &count, &longestName,
                                &longestData, nullptr, &time);
    };
    CHECK(ask(before) == 0);
    CHECK(std::vector<DWORD>{subkeys, longestKey, count, longestName, longestData} ==
          std::vector<DWORD>{4, 5, 4, 5, 5});
    CHECK(RegDeleteValueA(root, "Alpha") == 0);
    CHECK(SetBytes(root, "mid", "1234567890") == 0);
    CHECK(ask(after) == 0);
    CHECK(std::vector<DWORD>{count, longestName, longestData} == std::vector<DWORD>{3, 4, 10});
    CHECK(CompareFileTime(&before, &after) < 0);
}

TEST_CASE("a volatile key has volatile keys only") {
    const EmptyKey root;
    CHECK(Create(root, "gone", REG_OPTION_VOLATILE) == 0);
    CHECK(Create(root, "gone\\stays") == ERROR_CHILD_MUST_BE_VOLATILE);
    CHECK(Create(root, "gone\\too\\far", REG_OPTION_VOLATILE) == 0);
    CHECK(Create(root, "gone\\too") == 0);
}

TEST_CASE("limits of names and depth") {
    const EmptyKey root;
    CHECK(Create(root, std::string(255, 'k').c_str()) == 0);
    CHECK(SetBytes(root, std::string(16383, 'v').c_str(), "x") == 0);
    CHECK(SetBytes(root, std::string(16384, 'v').c_str(), "x") == ERROR_INVALID_PARAMETER);
    if (!kOnLayer) // Wine has neither of the limits that follow
        return;
    CHECK(Create(root, std::string(256, 'k').c_str()) == ERROR_INVALID_PARAMETER);
    std::string path;
    for (int level = 2; level < 512; ++level)
        path += "d\\";
    CHECK(Create(root, path.c_str()) == 0);
    CHECK(Create(root, (path + "e").c_str()) == ERROR_INVALID_PARAMETER);
    CHECK(Create(Key(root, path.c_str()), "e") == ERROR_INVALID_PARAMETER);
}

TEST_CASE("predefined keys and other machines") {
    CHECK(RegCloseKey(HKEY_LOCAL_MACHINE) == 0);
    CHECK(RegCloseKey(nullptr) == ERROR_INVALID_HANDLE);
    for (const HKEY root : {HKEY_CLASSES_ROOT, HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE, HKEY_USERS, HKEY_CURRENT_CONFIG})
        CHECK(Open(root, "") == 0);
    CHECK(RegDeleteKeyA(HKEY_LOCAL_MACHINE, "") == ERROR_ACCESS_DENIED);
    CHECK(Create(HKEY_CLASSES_ROOT, "KelCore.test") == 0);
    CHECK(RegDeleteKeyA(HKEY_LOCAL_MACHINE, "Software\\Classes\\KelCore.test") == 0);
    HKEY key = nullptr;
    CHECK(RegConnectRegistryA("\\\\no-such-machine.invalid", HKEY_LOCAL_MACHINE, &key) == ERROR_BAD_NETPATH);
}

TEST_CASE("the default value of a subkey is read as text, empty where there is none") {
    const EmptyKey root;
    CHECK(Create(root, "sub") == 0);
    const auto reads = [&](const char* subkey, LONG room, LONG code, LONG size, const std::string& text) {
        char buffer[20] = {};
        CHECK(RegQueryValueA(root, subkey, buffer, &room) == code);
        CHECK_MESSAGE((room == size && buffer == text), subkey, " ", room, " ", buffer);
    };
    reads("missing", 20, ERROR_FILE_NOT_FOUND, 20, "");
    reads("sub", 20, 0, 1, "");
    CHECK(RegSetValueA(root, "sub", REG_SZ, "hello", 0) == 0);
    reads("sub", 6, 0, 6, "hello");
    reads("sub", 5, ERROR_MORE_DATA, 6, "");
    HKEY opened = nullptr;
    CHECK((RegOpenKeyA(root, "", &opened) == 0 && opened == root));
    CHECK((RegOpenKeyA(root, "missing", &opened) == ERROR_FILE_NOT_FOUND && !opened));
}

TEST_CASE("threads share one key") {
    const EmptyKey root;
    std::atomic<int> wrong{0};
    kel::test::OnThreads(4, [&](int number) {
        const std::string own = "own" + std::to_string(number);
        for (int round = 0; round < 60; ++round) {
            const std::string text = std::to_string(100 + round) + std::string(20, 'x');
            const bool good = SetBytes(root, own.c_str(), text) == 0 && SetBytes(root, "all", text) == 0 &&
                              GetBytes(root, own.c_str()) == text && GetBytes(root, "all").size() >= 21 &&
                              ValueAt(root, 0) != "<259>" && Create(root, own.c_str()) == 0 &&
                              RegDeleteKeyA(root, own.c_str()) == 0;
            wrong += !good;
        }
    });
    CHECK(wrong == 0);
    CHECK(ValueAt(root, 4) != "<259>");
    CHECK(ValueAt(root, 5) == "<259>");
}
