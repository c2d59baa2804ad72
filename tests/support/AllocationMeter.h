#pragma once

#include <cstddef>

/// The bytes that this program has asked operator new for so far, in all. The library's requests count too, except on
/// Windows, where a library has operators of its own.
std::size_t AllocatedSoFar();
