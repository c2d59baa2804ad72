#pragma once

#include <kelcore/platform/files.h>

namespace kel::platform {

/// The rights that an access mask of CreateFileA stands for, generic ones replaced by those they mean. Every handle may
/// read attributes and be waited for.
DWORD SpecificFileRights(DWORD access);

/// Whether an opening with these rights takes part in the share modes: attribute rights alone do not.
bool TakesPartInSharing(DWORD rights);

/// Claims, for the open file description of @p descriptor, the use of @p rights and the refusal of what @p share leaves
/// out, against every other opening on this machine. The claim ends with the description or ReleaseSharing.
/// @return 0, or ERROR_SHARING_VIOLATION; 0 also where the host's file system knows no locks.
DWORD ClaimSharing(int descriptor, DWORD rights, DWORD share);

/// Ends the claim of a description that stays open.
void ReleaseSharing(int descriptor);

/// Whether the file may be deleted or renamed.
/// @param hostPath a link at the end is not followed; what is no plain file may always be deleted.
/// @return 0, or ERROR_SHARING_VIOLATION if somebody has it open without FILE_SHARE_DELETE.
DWORD CheckDeleteSharing(const char* hostPath);

/// The byte from which on the offsets of the host's locks stand for share modes, not for bytes of the file.
constexpr std::int64_t kSharingBytes = 0x7FFFFFFFFFFFFF00;

} // namespace kel::platform
