#include "platform/registry/HiveFile.h"

#include "platform/kernel/LastError.h"
#include "platform/registry/HiveSchema.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <pwd.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace kel::platform {
namespace {

// "Database File Format" of the SQLite documentation: the header and two fields of it, 32 bits each, big-endian.
constexpr std::size_t kHeaderSize = 100;
constexpr std::size_t kVersionOffset = 60;
constexpr std::size_t kIdentifierOffset = 68;
constexpr std::string_view kMagic("SQLite format 3\0", 16);
using Header = std::array<unsigned char, kHeaderSize>;

class Descriptor {
public:
    explicit Descriptor(int descriptor) : m_descriptor(descriptor) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (m_descriptor != -1)
            close(m_descriptor);
    }
    operator int() const { return m_descriptor; }

private:
    int m_descriptor;
};

[[noreturn]] void Refuse(DWORD code) {
    throw RegistryFailure{static_cast<LONG>(code)};
}

// A folder is what is missing when a file cannot be made or looked at.
[[noreturn]] void RefuseFromHost() {
    Refuse(errno == ENOENT ? ERROR_PATH_NOT_FOUND : ErrorFromHost(errno));
}

std::string FolderOf(const std::string& path) {
    const std::size_t end = path.rfind('/');
    return end == std::string::npos ? "." : path.substr(0, std::max<std::size_t>(end, 1));
}

std::string HomeFolder() {
    if (const char* home = std::getenv("HOME"); home != nullptr && *home != '\0')
        return home;
    const passwd* user = getpwuid(getuid());
    return user == nullptr ? "/" : user->pw_dir;
}

void MakeFolders(const std::string& path) {
    for (std::size_t end = path.find('/', 1); end != std::string::npos; end = path.find('/', end + 1))
        mkdir(path.substr(0, end).c_str(), S_IRWXU);
    mkdir(path.c_str(), S_IRWXU);
}

std::int64_t Field(const Header& header, std::size_t offset) {
    std::int64_t value = 0;
    for (std::size_t i = 0; i < 4; ++i)
        value = value << 8 | header[offset + i];
    return value;
}

bool WriteAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = Uninterrupted([&] { return write(file, bytes.data(), bytes.size()); });
        if (count == -1)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

bool NameOnce(const std::string& from, const std::string& to) {
    return renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0 || errno == EEXIST;
}

// A hive gets its name when it is whole and has reached the disk: nobody waits for the disk while he holds it, and
// nobody sees half of it. If several processes make it at once, one of them is the first.
void MakeHive(const std::string& path, const std::string& folder) {
    const std::string bytes = NewHive();
    std::string made = path + ".XXXXXX";
    const Descriptor file(mkostemp(made.data(), O_CLOEXEC));
    if (file == -1)
        RefuseFromHost();
    const bool named = WriteAll(file, bytes) && fsync(file) == 0 && NameOnce(made, path);
    const int error = errno;
    unlink(made.c_str()); // unless it has its name
    if (!named) {
        errno = error;
        RefuseFromHost();
    }
    const Descriptor entry(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (entry != -1)
        fsync(entry);
}

void CheckHeader(const Header& header, std::size_t size) {
    if (std::memcmp(header.data(), kMagic.data(), std::min(size, kMagic.size())) != 0)
        Refuse(ERROR_NOT_REGISTRY_FILE);
    if (size < kHeaderSize)
        Refuse(ERROR_REGISTRY_CORRUPT);
    if (Field(header, kIdentifierOffset) != kHiveIdentifier)
        Refuse(ERROR_NOT_REGISTRY_FILE);
    if (Field(header, kVersionOffset) > kHiveVersion)
        Refuse(ERROR_UNKNOWN_REVISION);
}

// Closing a descriptor ends the locks that the process has on its file, those of SQLite included; so it is opened only
// while the process has no connection to it.
void LookAtHeader(const std::string& path) {
    const Descriptor file(Uninterrupted([&] { return open(path.c_str(), O_RDONLY | O_CLOEXEC); }));
    if (file == -1)
        RefuseFromHost();
    Header header{};
    const ssize_t size = Uninterrupted([&] { return pread(file, header.data(), header.size(), /*offset*/ 0); });
    if (size == -1)
        Refuse(ERROR_REGISTRY_IO_FAILED);
    if (size > 0)
        CheckHeader(header, static_cast<std::size_t>(size));
}

} // namespace

std::string DefaultHivePath() {
    if (const char* named = std::getenv("KELCORE_REGISTRY"); named != nullptr && *named != '\0')
        return named;
    const char* data = std::getenv("XDG_DATA_HOME");
    const bool isSet = data != nullptr && *data == '/';
    const std::string folder = (isSet ? std::string(data) : HomeFolder() + "/.local/share") + "/kelcore";
    MakeFolders(folder);
    return folder + "/registry.db";
}

void PrepareHiveFile(const std::string& path) {
    const std::string folder = FolderOf(path);
    struct stat facts;
    if (access((folder + '/').c_str(), W_OK | X_OK) != 0) // SQLite makes two files beside this one
        RefuseFromHost();
    if (stat(path.c_str(), &facts) != 0)
        MakeHive(path, folder);
    else if (!S_ISREG(facts.st_mode))
        Refuse(ERROR_NOT_REGISTRY_FILE);
    if (access(path.c_str(), R_OK | W_OK) != 0)
        RefuseFromHost();
    LookAtHeader(path);
}

FileSignature SignatureOf(const std::string& path) {
    struct stat facts;
    if (stat(path.c_str(), &facts) != 0)
        return {};
    return {facts.st_dev, facts.st_ino, facts.st_size, facts.st_mtim.tv_sec * 1'000'000'000LL + facts.st_mtim.tv_nsec};
}

} // namespace kel::platform
