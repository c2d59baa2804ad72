#pragma once

namespace kel::toolkit {

/// The operations of every control by position, kSlots of them.
const void* const* ControlTable();

} // namespace kel::toolkit
