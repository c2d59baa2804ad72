#pragma once

#include <string>
#include <typeinfo>

namespace kel {

/// The one spelling of a type's name, the same on every compiler, that class identifiers are hashed from.
/// docs/formats/object-records.md states its rules.
std::string NormalTypeName(const std::type_info& type);

/// Brings a name as compilers spell it (demangled, with or without keywords) into that spelling.
std::string NormaliseTypeName(std::string name);

} // namespace kel
