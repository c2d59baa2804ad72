// What only the layer's own registry has: its file, the processes that share it, damage.

#include "tests/support/RegistryKeys.h"
#include "tests/support/SecondProcess.h"

#include <kelcore/platform/testing.h>
#include <kelcore/text.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

// A folder for hives. The registry is in a file there for the length of a test.
class HiveFolder {
public:
    HiveFolder() {
        std::string name = (fs::temp_directory_path() / "kelcore-hive-XXXXXX").string();
        REQUIRE(mkdtemp(name.data()) != nullptr);
        m_path = name;
        kel::platform::UseHive(Hive().c_str());
    }
    HiveFolder(const HiveFolder&) = delete;
    HiveFolder& operator=(const HiveFolder&) = delete;
    ~HiveFolder() {
        kel::platform::UseHive("");
        fs::remove_all(m_path);
    }

    std::string Hive(const char* name = "hive.db") const { return (m_path / name).string(); }

private:
    fs::path m_path;
};

std::string ReadAll(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void WriteAll(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

LONG TryHive(const std::string& path) {
    kel::platform::UseHive(path.c_str());
    return SetBytes(HKEY_CURRENT_USER, "try", "x");
}

std::string Name(unsigned number) {
    return "name " + std::to_string(number);
}

// One step of the random work, made in whichever process it is asked for.
struct Step {
    unsigned kind, key, value, data;

    explicit Step(std::uint64_t code)
        : kind(code & 7), key(code >> 3 & 3), value(code >> 5 & 7), data(static_cast<unsigned>(code >> 8 & 127)) {}

    LONG Run() const {
        HKEY opened = nullptr;
        const std::string path = std::string(EmptyKey::kPath) + "\\" + Name(key);
        if (kind == 0)
            return RegDeleteKeyA(HKEY_CURRENT_USER, path.c_str());
        const LONG code = kind == 1 ? RegCreateKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS,
                                                      nullptr, &opened, nullptr)
                                    : RegOpenKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, KEY_ALL_ACCESS, &opened);
        const Key closed(opened);
        if (code != 0 || kind == 1)
            return code;
        if (kind == 2)
            return RegDeleteValueA(opened, Name(value).c_str());
        if (kind <= 5)
            return SetBytes(opened, Name(value).c_str(), std::string(data, 'd'));
        return Count(opened);
    }

    // What there is to be read, as a number: values and the sizes of their data.
    static LONG Count(HKEY key) {
        std::size_t sum = 0;
        for (DWORD i = 0; ValueAt(key, i) != "<259>"; ++i)
            sum += 1 + GetBytes(key, ValueAt(key, i).c_str()).size();
        return static_cast<LONG>(sum & 0xFF);
    }
};

// The same in memory.
class Model {
public:
    LONG Run(const Step& step) {
        const auto found = m_keys.find(step.key);
        if (step.kind == 1)
            return m_keys[step.key], 0;
        if (found == m_keys.end())
            return ERROR_FILE_NOT_FOUND;
        auto& values = found->second;
        if (step.kind == 0)
            m_keys.erase(found);
        else if (step.kind == 2)
            return values.erase(step.value) == 1 ? 0 : ERROR_FILE_NOT_FOUND;
        else if (step.kind <= 5)
            values[step.value] = step.data;
        return step.kind <= 5 ? 0 : Count(values);
    }

private:
    static LONG Count(const std::map<unsigned, unsigned>& values) {
        unsigned sum = 0;
        for (const auto& [value, data] : values)
            sum += 1 + data;
        return static_cast<LONG>(sum & 0xFF);
    }

    std::map<unsigned, std::map<unsigned, unsigned>> m_keys;
};

} // namespace

TEST_CASE("two processes at random see what a model of the registry sees") {
    const HiveFolder folder;
    const EmptyKey root; // open before the process divides
    kel::test::SecondProcess other([](std::uint64_t code) { return static_cast<int>(Step(code).Run()); });
    Model model;
    std::mt19937_64 random(20261123);
    for (int round = 0; round < 4000; ++round) {
        const std::uint64_t code = random();
        const Step step(code);
        // Runs of one process's own work alternate with single steps.
        const bool here = code >> 60 < (round / 100 % 2 == 0 ? 15u : 8u);
        REQUIRE_MESSAGE((here ? step.Run() : other.Ask(code)) == model.Run(step), round);
    }
}

TEST_CASE("a hive is the user's alone, and whole when it is opened again") {
    const HiveFolder folder;
    CHECK(SetBytes(HKEY_CURRENT_USER, "kept", "bytes") == 0);
    CHECK(RegFlushKey(HKEY_CURRENT_USER) == 0);
    CHECK(fs::status(folder.Hive()).permissions() == (fs::perms::owner_read | fs::perms::owner_write));
    kel::platform::UseHive(":memory:");
    CHECK(GetBytes(HKEY_CURRENT_USER, "kept") == "<2>");
    CHECK(SetBytes(HKEY_CURRENT_USER, "other", "x") == 0);
    kel::platform::UseHive(folder.Hive().c_str());
    CHECK(GetBytes(HKEY_CURRENT_USER, "kept") == "bytes");
    CHECK(GetBytes(HKEY_CURRENT_USER, "other") == "<2>");
}

// The stored hive has the name and text "Gr\u00F6\u00DFe", two values below "Kept", and a volatile key "Gone" that was
// made on another host.
TEST_CASE("a stored hive is understood in every code page") {
    const HiveFolder folder;
    fs::copy_file(KELCORE_TEST_DATA "/golden/registry.db", folder.Hive());
    const std::string word = StdW2A(u"Gr\u00F6\u00DFe"_w), folded = StdW2A(u"gR\u00D6\u00DFE"_w);
    CHECK(SubkeyAt(HKEY_CURRENT_USER, 0) == "Kept");
    CHECK(SubkeyAt(HKEY_CURRENT_USER, 1) == "<259>");
    HKEY key = nullptr;
    REQUIRE(RegOpenKeyExA(HKEY_CURRENT_USER, "kept", 0, KEY_READ, &key) == 0);
    const Key kept(key);
    CHECK(ValueAt(kept, 0) == word);
    CHECK(GetBytes(kept, folded.c_str()) == word + '\0');
    CHECK(GetBytes(kept, "number") == std::string("\x2A\0\0\0", 4));
}

TEST_CASE("a file that is damaged, or no hive, is refused by every call and left as it was") {
    const HiveFolder folder;
    for (unsigned i = 0; i < 300; ++i)
        REQUIRE(SetBytes(HKEY_CURRENT_USER, Name(i).c_str(), std::string(40, 'v')) == 0);
    kel::platform::UseHive(":memory:");
    const std::string good = ReadAll(folder.Hive());
    REQUIRE(good.size() > 5 * 4096);
    const struct {
        const char* name;
        std::size_t at;
        std::string bytes;
        std::size_t size; // of the whole file, 0 as it is
        LONG code;
    } rows[] = {{"a text", 0, "This is no hive.", 16, ERROR_NOT_REGISTRY_FILE},
                {"another database", 68, "ABCD", 0, ERROR_NOT_REGISTRY_FILE},
                {"a later version", 60, std::string("\0\0\0\2", 4), 0, ERROR_UNKNOWN_REVISION},
                {"cut in the header", 0, "SQLite", 50, ERROR_REGISTRY_CORRUPT},
                {"cut in the middle", 0, "SQLite", 3 * 4096 + 100, ERROR_REGISTRY_CORRUPT},
                {"another table", good.find("CREATE TABLE vals"), "CREATE TABLE valz", 0, ERROR_REGISTRY_CORRUPT},
                {"a page of zeros", 2 * 4096, std::string(4096, '\0'), 0, ERROR_REGISTRY_CORRUPT},
                {"a page of noise", good.size() - 4096, std::string(4096, '\xA5'), 0, ERROR_REGISTRY_CORRUPT}};
    for (const auto& row : rows) {
        CAPTURE(row.name);
        std::string bad = good;
        bad.replace(row.at, row.bytes.size(), row.bytes);
        if (row.size != 0)
            bad.resize(row.size);
        WriteAll(folder.Hive("bad.db"), bad);
        CHECK(TryHive(folder.Hive("bad.db")) == row.code);
        CHECK(GetBytes(HKEY_CURRENT_USER, "try") == "<" + std::to_string(row.code) + ">");
        kel::platform::UseHive(":memory:");
        CHECK((ReadAll(folder.Hive("bad.db")) == bad));
    }
    WriteAll(folder.Hive("bad.db"), good);
    for (const char* rest : {"bad.db-wal", "bad.db-shm"})
        fs::remove(folder.Hive(rest));
    CHECK(TryHive(folder.Hive("bad.db")) == 0);
}

TEST_CASE("where no hive can be it is refused, and looked at again when that has changed") {
    const HiveFolder folder;
    WriteAll(folder.Hive("late.db"), "not yet");
    CHECK(TryHive(folder.Hive("late.db")) == ERROR_NOT_REGISTRY_FILE);
    fs::remove(folder.Hive("late.db"));
    CHECK(SetBytes(HKEY_CURRENT_USER, "try", "x") == 0);
    fs::create_directory(folder.Hive("folder"));
    CHECK(TryHive(folder.Hive("folder")) == ERROR_NOT_REGISTRY_FILE);
    CHECK(TryHive(folder.Hive("missing/hive.db")) == ERROR_PATH_NOT_FOUND);
    WriteAll(folder.Hive("file"), "");
    CHECK(TryHive(folder.Hive("file/hive.db")) == ERROR_PATH_NOT_FOUND);
    if (geteuid() == 0)
        return; // nothing is forbidden to the superuser
    fs::permissions(folder.Hive("folder"), fs::perms::owner_read | fs::perms::owner_exec);
    CHECK(TryHive(folder.Hive("folder/hive.db")) == ERROR_ACCESS_DENIED);
    fs::permissions(folder.Hive("file"), fs::perms::owner_read);
    CHECK(TryHive(folder.Hive("file")) == ERROR_ACCESS_DENIED);
}
