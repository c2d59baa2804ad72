// The registry over a hive whose file holds arbitrary bytes: every call ends with a result, and a file that is refused
// stays as it was.

#include <kelcore/platform.h>
#include <kelcore/platform/testing.h>

#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

// In memory where the host has such a folder.
const std::string& HivePath() {
    static const std::string path = [] {
        std::string folder =
            access("/dev/shm", W_OK) == 0 ? "/dev/shm/kelcore-fuzz-XXXXXX" : "/tmp/kelcore-fuzz-XXXXXX";
        if (mkdtemp(folder.data()) == nullptr)
            std::abort();
        return folder + "/hive.db";
    }();
    return path;
}

void WriteHive(const std::uint8_t* data, std::size_t size) {
    for (const char* rest : {"-wal", "-shm"})
        unlink((HivePath() + rest).c_str());
    const int file = open(HivePath().c_str(), O_WRONLY | O_CREAT | O_TRUNC, S_IRUSR | S_IWUSR);
    if (write(file, data, size) != static_cast<ssize_t>(size))
        std::abort();
    close(file);
}

bool HiveIs(const std::uint8_t* data, std::size_t size) {
    std::vector<std::uint8_t> bytes(size + 1);
    const int file = open(HivePath().c_str(), O_RDONLY);
    const ssize_t count = read(file, bytes.data(), bytes.size());
    close(file);
    bytes.resize(size);
    return count == static_cast<ssize_t>(size) && bytes == std::vector<std::uint8_t>(data, data + size);
}

void ReadValues(HKEY key) {
    char name[512];
    BYTE data[512];
    for (DWORD i = 0; i < 50; ++i) {
        DWORD nameSize = sizeof name;
        DWORD size = sizeof data;
        const LONG code = RegEnumValueA(key, i, name, &nameSize, nullptr, nullptr, data, &size);
        if (code == ERROR_SUCCESS)
            RegQueryValueExA(key, name, nullptr, nullptr, data, &size);
        else if (code != ERROR_MORE_DATA)
            return;
    }
}

void Walk(HKEY key, int depth) {
    ReadValues(key);
    RegQueryInfoKeyA(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                     nullptr);
    char name[512];
    for (DWORD i = 0; i < 20 && depth < 8; ++i) {
        DWORD size = sizeof name;
        HKEY subkey = nullptr;
        if (RegEnumKeyExA(key, i, name, &size, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
            return;
        if (RegOpenKeyExA(key, name, 0, KEY_READ, &subkey) == ERROR_SUCCESS)
            Walk(subkey, depth + 1);
        RegCloseKey(subkey);
    }
}

void Change() {
    HKEY key = nullptr;
    const BYTE data[] = "data";
    RegCreateKeyExA(HKEY_CURRENT_USER, "Kept\\new", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr);
    RegSetValueExA(key, "value", 0, REG_SZ, data, sizeof data);
    RegDeleteValueA(key, "value");
    RegDeleteKeyA(HKEY_CURRENT_USER, "Kept\\new");
    RegFlushKey(key);
    RegCloseKey(key);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    WriteHive(data, size);
    kel::platform::UseHive(HivePath().c_str());
    HKEY key = nullptr;
    const LONG code = RegOpenKeyExA(HKEY_USERS, "Current", 0, KEY_READ, &key);
    RegCloseKey(key);
    if (code == ERROR_NOT_REGISTRY_FILE || code == ERROR_REGISTRY_CORRUPT || code == ERROR_UNKNOWN_REVISION) {
        if (!HiveIs(data, size))
            std::abort();
    } else {
        for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_USERS})
            Walk(root, 0);
        Change();
    }
    kel::platform::UseHive(":memory:");
    unlink(HivePath().c_str());
    return 0;
}
