#include "platform/kernel/Attributes.h"

#include "platform/kernel/Faults.h"
#include "platform/kernel/FileFacts.h"
#include "platform/kernel/HostPath.h"
#include "platform/kernel/HostText.h"
#include "platform/kernel/LastError.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace kel::platform {
namespace {

constexpr mode_t kWriteBits = S_IWUSR | S_IWGRP | S_IWOTH;

// Kept by nobody, but harmless: what the host has in its place, and what is no more than advice.
constexpr DWORD kAccepted = FILE_ATTRIBUTE_NORMAL | FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_TEMPORARY |
                            FILE_ATTRIBUTE_NOT_CONTENT_INDEXED | FILE_ATTRIBUTE_REPARSE_POINT;
constexpr DWORD kUnderstood = kAccepted | FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_DIRECTORY;

int Ask(int folder, const char* path, int flags, struct statx& answer) {
    return statx(folder, path, flags, STATX_BASIC_STATS | STATX_BTIME, &answer) == 0 ? 0 : errno;
}

EntryFacts FactsFrom(const struct statx& answer, const char* path) {
    return {AttributesOf(answer.stx_mode, LastComponent(path)), CreationTime(answer), ToFileTime(answer.stx_atime),
            ToFileTime(answer.stx_mtime), S_ISREG(answer.stx_mode) ? answer.stx_size : 0};
}

EntryFacts LinkFacts(int folder, const char* path, const struct statx& link) {
    struct statx target;
    if (Ask(folder, path, /*flags*/ 0, target) == 0 && !S_ISDIR(target.stx_mode)) {
        EntryFacts facts = FactsFrom(target, path);
        facts.attributes |= FILE_ATTRIBUTE_REPARSE_POINT;
        return facts;
    }
    EntryFacts facts = FactsFrom(link, path);
    facts.attributes = (facts.attributes & FILE_ATTRIBUTE_HIDDEN) | FILE_ATTRIBUTE_REPARSE_POINT;
    return facts;
}

// The host path of something that is there, and what is there once links are followed.
bool Find(LPCSTR path, std::string& host, struct stat& target) {
    if (const DWORD error = path == nullptr ? ERROR_PATH_NOT_FOUND : ResolveHostPath(Utf8FromAnsi(path), host, target))
        return Fail(error);
    if (target.st_mode == 0)
        return Fail(ERROR_FILE_NOT_FOUND);
    return !S_ISLNK(target.st_mode) || stat(host.c_str(), &target) == 0 || FailFromHost();
}

DWORD CheckRequest(DWORD wanted, DWORD present) {
    if ((wanted & FILE_ATTRIBUTE_DIRECTORY) && !(present & FILE_ATTRIBUTE_DIRECTORY))
        return ERROR_INVALID_PARAMETER;
    const bool hiddenAgrees = ((wanted ^ present) & FILE_ATTRIBUTE_HIDDEN) == 0;
    return hiddenAgrees && (wanted & ~kUnderstood) == 0 ? 0 : ERROR_NOT_SUPPORTED;
}

} // namespace

std::string_view LastComponent(std::string_view hostPath) {
    return hostPath.substr(hostPath.rfind('/') + 1);
}

int FollowedFacts(int folder, const char* path, EntryFacts& facts) {
    struct statx answer;
    const int error = Ask(folder, path, /*flags*/ 0, answer);
    if (error == 0)
        facts = FactsFrom(answer, path);
    return error;
}

int ListedFacts(int folder, const char* path, EntryFacts& facts) {
    struct statx answer;
    const int error = Ask(folder, path, AT_SYMLINK_NOFOLLOW, answer);
    if (error == 0)
        facts = S_ISLNK(answer.stx_mode) ? LinkFacts(folder, path, answer) : FactsFrom(answer, path);
    return error;
}

} // namespace kel::platform

using namespace kel::platform;

DWORD WINAPI GetFileAttributesA(LPCSTR path) {
    std::string host;
    struct stat target;
    if (CallFails("GetFileAttributesA") || !Find(path, host, target))
        return INVALID_FILE_ATTRIBUTES;
    return AttributesOf(target.st_mode, LastComponent(host));
}

BOOL WINAPI GetFileAttributesExA(LPCSTR path, GET_FILEEX_INFO_LEVELS level, LPVOID data) {
    std::string host;
    struct stat target;
    if (CallFails("GetFileAttributesExA"))
        return FALSE;
    if (level != GetFileExInfoStandard || data == nullptr)
        return Fail(ERROR_INVALID_PARAMETER);
    if (!Find(path, host, target))
        return FALSE;
    EntryFacts facts;
    if (const int error = FollowedFacts(AT_FDCWD, host.c_str(), facts))
        return Fail(ErrorFromHost(error));
    TellFacts(facts, *static_cast<WIN32_FILE_ATTRIBUTE_DATA*>(data));
    return TRUE;
}

BOOL WINAPI SetFileAttributesA(LPCSTR path, DWORD attributes) {
    std::string host;
    struct stat target;
    if (CallFails("SetFileAttributesA") || !Find(path, host, target))
        return FALSE;
    const DWORD present = AttributesOf(target.st_mode, LastComponent(host));
    if (const DWORD error = CheckRequest(attributes, present))
        return Fail(error);
    if (((attributes ^ present) & FILE_ATTRIBUTE_READONLY) == 0)
        return TRUE;
    const mode_t mode = attributes & FILE_ATTRIBUTE_READONLY ? target.st_mode & ~kWriteBits : target.st_mode | S_IWUSR;
    return chmod(host.c_str(), mode & 07777) == 0 || FailFromHost();
}
