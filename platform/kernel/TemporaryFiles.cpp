#include "platform/kernel/Faults.h"
#include "platform/kernel/FullPath.h"
#include "platform/kernel/HostPath.h"
#include "platform/kernel/HostText.h"
#include "platform/kernel/LastError.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <kelcore/platform/paths.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

namespace kel::platform {
namespace {

constexpr UINT kNumbers = 0x10000;
constexpr std::size_t kLongestFolder = MAX_PATH - 14;

std::string TemporaryFolder() {
    for (const char* variable : {"TMPDIR", "TMP", "TEMP"}) {
        const char* value = std::getenv(variable);
        if (value != nullptr && value[0] != '\0')
            return value;
    }
    return "/tmp";
}

bool IsFolder(LPCSTR path) {
    std::string host;
    struct stat target;
    return ResolveHostPath(path, host) == 0 && stat(host.c_str(), &target) == 0 && S_ISDIR(target.st_mode);
}

std::string NameStart(std::string_view folder, LPCSTR prefix) {
    std::string start(folder);
    if (!IsSeparator(start.back()))
        start += '\\';
    return start + std::string(CutAtCharacter(prefix == nullptr ? "" : prefix, 3));
}

std::string Numbered(const std::string& start, UINT number) {
    char digits[16];
    std::snprintf(digits, sizeof digits, "%x.tmp", static_cast<unsigned>(number));
    return start + digits;
}

// @return 0, ERROR_ALREADY_EXISTS, or what else is in the way.
DWORD CreateEmptyFile(const std::string& path) {
    std::string host;
    if (const DWORD error = ResolveHostPath(path.c_str(), host))
        return error;
    const int file = open(host.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file == -1)
        return ErrorFromHost(errno);
    close(file);
    return 0;
}

// Begins at the clock, so that one name is not tried again and again by all.
UINT CreateUnderFreeNumber(const std::string& start) {
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    const UINT first = static_cast<UINT>(now.tv_nsec / 1000);
    for (UINT i = 0; i < kNumbers; ++i) {
        const UINT number = (first + i) % kNumbers;
        const DWORD error = number == 0 ? ERROR_ALREADY_EXISTS : CreateEmptyFile(Numbered(start, number));
        if (error == 0)
            return number;
        if (error != ERROR_ALREADY_EXISTS)
            return Fail(error);
    }
    return Fail(ERROR_FILE_EXISTS);
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

DWORD WINAPI GetTempPathA(DWORD size, LPSTR buffer) {
    std::string path;
    if (CallFails("GetTempPathA") || !FullPath(TemporaryFolder(), path))
        return 0;
    if (path.back() != '\\')
        path += '\\';
    return GiveText(AnsiFromUtf8(path), buffer, size);
}

UINT WINAPI GetTempFileNameA(LPCSTR folder, LPCSTR prefix, UINT unique, LPSTR buffer) {
    if (CallFails("GetTempFileNameA"))
        return 0;
    if (folder == nullptr || !IsFolder(folder))
        return Fail(ERROR_DIRECTORY);
    const std::string_view path = folder;
    if (path.size() > kLongestFolder)
        return Fail(ERROR_BUFFER_OVERFLOW);
    const std::string start = NameStart(path, prefix);
    unique %= kNumbers;
    if (unique == 0)
        unique = CreateUnderFreeNumber(start);
    if (unique != 0)
        GiveText(Numbered(start, unique), buffer, MAX_PATH);
    return unique;
}
