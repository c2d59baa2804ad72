#pragma once

#include <cstddef>

/// The bytes that this program has asked operator new for so far, in all. The library's requests count too, except on
/// Windows, where a library has operators of its own.
std::size_t AllocatedSoFar();

/// Refuses memory to this thread once: to its request number @p nth from now on, counted from 0.
void RefuseAllocation(int nth);
/// Whether the refusal has been met; none is pending any more.
bool RefusalIsMet();
