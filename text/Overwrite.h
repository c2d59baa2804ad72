#pragma once

#include <cstddef>
#include <string>

namespace kel {

/// Gives @p text room for @p room elements and lets @p fill write them, which returns how many it wrote; they become
/// the whole text. Where the standard library can, nothing is cleared beforehand, which for long texts costs as much as
/// a conversion.
/// @p fill is called once as `std::size_t fill(Unit* to, std::size_t room)`.
template <class Unit, class Fill>
void Overwrite(std::basic_string<Unit>& text, std::size_t room, Fill fill) {
#if defined(__cpp_lib_string_resize_and_overwrite)
    text.resize_and_overwrite(room, fill);
#else
    text.resize(room);
    text.resize(fill(text.data(), room));
#endif
}

} // namespace kel
