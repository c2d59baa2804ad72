#pragma once

#include <kelcore/platform/base.h>

#include <string>
#include <sys/stat.h>

namespace kel::platform {

/// A host path and what is there.
struct Place {
    std::string host;
    struct stat facts = {}; ///< st_mode is 0 if nothing is there

    bool Exists() const { return facts.st_mode != 0; }
};

/// Goes on to what a link leads to, in the facts; the path stays the link's. @return 0, or a Win32 error code.
DWORD FollowLink(Place& place);

/// Copies the plain file @p from, with times and permissions, into @p to, a new file or one whose contents are
/// replaced. What is left of the target after a failure is removed.
/// @return 0, or a Win32 error code.
DWORD CopyHostFile(const Place& from, Place& to);

} // namespace kel::platform
