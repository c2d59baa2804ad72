#pragma once

#include <string>
#include <typeinfo>

namespace kel {

/// The one spelling of a type's name, the same on every compiler, that class identifiers are hashed from.
/// docs/formats/object-records.md states its rules.
/// @throws std::bad_alloc
std::string NormalTypeName(const std::type_info& type);

/// Brings a name as compilers spell it (demangled, with or without keywords) into that spelling.
std::string NormaliseTypeName(std::string name);

/// Chooses between a name and what __cxa_demangle made of it: null, with its status, if that is none.
/// @throws std::bad_alloc if it lacked memory. A class known by its mangled name would have another identifier.
std::string PlainTypeName(const char* raw, const char* demangled, int status);

} // namespace kel
