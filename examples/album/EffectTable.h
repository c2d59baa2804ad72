#pragma once

#include <kelcore/picture.h>

#include <functional>
#include <string>

namespace kelalbum {

/// One effect with its value: changes a picture, and answers whether it did.
using EffectOnPicture = std::function<bool(XPDib&)>;

/// The effect of a name, as docs/effects.md describes them, in small letters.
/// @param value empty if none was given.
/// @throws Misuse if there is no such effect, or @p value is not of its kind.
EffectOnPicture FindEffect(const std::string& name, const std::string& value);

/// All names, each with the kind of its value, in lines indented for the usage.
std::string EffectNames();

} // namespace kelalbum
