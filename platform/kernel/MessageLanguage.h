#pragma once

#include "platform/kernel/MessageInserts.h"
#include "platform/kernel/MessageText.h"

namespace kel::platform {

/// Puts out @p message, its inserts and escapes replaced.
/// @param keepInserts leave inserts, and the escapes that only they need, as they are written.
/// @return whether it is well formed; otherwise @p out holds the part before the fault.
bool PutMessage(MessageText& out, const char* message, bool keepInserts, MessageArguments& arguments);

} // namespace kel::platform
