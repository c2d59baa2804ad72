#pragma once

/// @file
/// KELCORE_API marks what the library offers to other modules; everything unmarked stays inside.
/// KELCORE_BUILDING is defined while the library itself is compiled.

#if defined(_WIN32)
#if defined(KELCORE_BUILDING)
#define KELCORE_API __declspec(dllexport)
#else
#define KELCORE_API __declspec(dllimport)
#endif
#else
#define KELCORE_API __attribute__((visibility("default")))
#endif
