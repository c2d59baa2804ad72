#pragma once

#include "platform/modules/Bytes.h"

#include <kelcore/platform/versions.h>

/// Version records (VS_VERSIONINFO) and the blocks that GetFileVersionInfoA makes of them: the record, padded to 4
/// bytes, and behind it twice that size and 4 bytes more as room for its texts in narrow form. A text at offset n of
/// the record is put at n * 2 of the room: no code page makes more than four bytes of a unit.
namespace kel::platform {

/// The size of the block for a record, 0 if the bytes do not begin like one.
std::size_t VersionBlockSize(const Bytes& record);

/// Makes the block, or as much of it as @p size holds: the sizes in it are cut to what is there.
/// @param record one whose VersionBlockSize is not 0.
void FillVersionBlock(const Bytes& record, char* block, std::size_t size);

/// What VerQueryValueA does.
bool QueryVersionBlock(const char* block, LPCSTR path, LPVOID* value, UINT* length);

} // namespace kel::platform
