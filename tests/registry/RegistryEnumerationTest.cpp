#include "tests/registry/TestKey.h"

namespace {

using Names = std::vector<WideString>;

struct TestedKey : RegistryKey {
    explicit TestedKey(const RegistryKey& key) : RegistryKey(key) {}
    using RegistryKey::GetTypedValues;
};

} // namespace

TEST_CASE("names match patterns of '?' for one unit and '*' for any rest but none") {
    const struct {
        String name, pattern;
        bool matches;
    } cases[] = {
        {u"abc"_w, u"abc"_w, true},     {u"abc"_w, u"ab"_w, false},   {u"ab"_w, u"abc"_w, false},
        {u"abc"_w, u"a*"_w, true},      {u"a"_w, u"a*"_w, false},     {u"abc"_w, u"*c"_w, true},
        {u"abc"_w, u"*x"_w, true},      {u"ABC"_w, u"abc"_w, false},  {u""_w, u""_w, true},
        {u""_w, u"*"_w, false},         {u""_w, u"?"_w, false},       {u"abc"_w, u"a?c"_w, true},
        {u"ac"_w, u"a?c"_w, false},     {u"abcd"_w, u"a?c"_w, false}, {u"a"_w, u""_w, false},
        {u"a?*"_w, u"a??"_w, true},     {u"a*"_w, u"a*"_w, true},     {u"\x416x"_w, u"?x"_w, true},
        {u"\x416"_w, u"\x16"_w, false}, {u"a\0b"_w, u"a\0?"_w, true}, {u"xbc"_w, u"a*"_w, false},
    };
    for (const auto& row : cases)
        CHECK_MESSAGE(RegistryKey::NameMatch(row.name, row.pattern) == row.matches, row.name, " ", row.pattern);
}

TEST_CASE("all values of a type are appended in the order of the system") {
    const TestKey test;
    RegistryKey key = test.Open(KEY_READ);
    Names names = {u"old"_w}, texts = {u"text"_w};
    std::vector<unsigned long> numbers = {7};
    std::vector<std::string> datas = {"data"};
    CHECK(key.GetAllStrings(names, texts) == ERROR_SUCCESS);
    CHECK(names.size() == 1);

    // Systems list values in the order of their making or of their names; here these are the same.
    test.Store("", REG_SZ, std::string("one\0\0\0", 6));
    test.Store("a", REG_DWORD, "\1\2\3\4");
    test.Store("a longer name", REG_SZ, std::string("in\0side\0", 8));
    test.Store("b", REG_BINARY, std::string("x\0\0", 3));
    test.Store("empty", REG_SZ, "");
    test.Store("m", REG_DWORD, "\xFF");
    test.Store("x", REG_EXPAND_SZ, std::string("no\0", 3));
    test.Store("z", REG_SZ, std::string("two\0", 4));
    CHECK(key.GetAllStrings(names, texts) == ERROR_SUCCESS);
    CHECK(names == Names{u"old"_w, u""_w, u"a longer name"_w, u"empty"_w, u"z"_w});
    CHECK(texts == Names{u"text"_w, u"one"_w, u"in"_w, u""_w, u"two"_w});
    names.clear();
    CHECK(key.GetAllIntegers(names, numbers) == ERROR_SUCCESS);
    CHECK(names == Names{u"a"_w, u"m"_w});
    CHECK(numbers == std::vector<unsigned long>{7, 0x04030201, 0xFF});
    CHECK(key.GetAllBinaries(names, datas) == ERROR_SUCCESS);
    CHECK(names == Names{u"a"_w, u"m"_w, u"b"_w});
    CHECK(TestedKey(key).GetTypedValues(REG_SZ, names, datas) == ERROR_SUCCESS);
    CHECK(datas ==
          std::vector<std::string>{"data", std::string("x\0\0", 3), "one", std::string("in\0side", 7), "", "two"});
}

TEST_CASE("values are deleted by pattern, or all of them") {
    const TestKey test;
    const auto left = [&] {
        Names names;
        Names texts;
        CHECK(test.Open().GetAllStrings(names, texts) == ERROR_SUCCESS);
        return names;
    };
    for (const char* name : {"keep1", "tmpA", "tmpB", "keep2", "tmp", "tmpC"})
        test.Store(name, REG_SZ, "");
    CHECK(test.Open(KEY_READ).DeleteMultipleValues(u"tmp*"_w) == ERROR_ACCESS_DENIED);
    test.Open(KEY_READ).DeleteAllValues();
    CHECK(left().size() == 6);
    CHECK(test.Open().DeleteMultipleValues(u"tmp*"_w) == ERROR_SUCCESS);
    CHECK(left() == Names{u"keep1"_w, u"keep2"_w, u"tmp"_w});
    CHECK(test.Open().DeleteMultipleValues(u"none"_w) == ERROR_SUCCESS);

    test.Store("", REG_DWORD, "1234");
    test.Store(std::string(519, 'f').c_str(), REG_BINARY, "");
    test.Open().DeleteAllValues();
    CHECK(left().empty());
    test.Store(std::string(520, 'l').c_str(), REG_SZ, "");
    test.Open().DeleteAllValues();
    CHECK(left().size() == 1);
    CHECK(test.Open().DeleteMultipleValues(u"*"_w) == ERROR_SUCCESS);
    CHECK(left().empty());
}
