#pragma once

/// @file
/// KELCORE_API marks what the library offers to other modules; everything unmarked stays inside. KELCORE_INLINE marks
/// inline members of such classes, which the library holds as symbols too, for clients that ask for them by name.
/// KELCORE_BUILDING is defined while the library itself is compiled.

#if defined(_WIN32)
#if defined(KELCORE_BUILDING)
#define KELCORE_API __declspec(dllexport)
#define KELCORE_INLINE __declspec(dllexport)
#else
#define KELCORE_API __declspec(dllimport)
#define KELCORE_INLINE
#endif
#else
#define KELCORE_API __attribute__((visibility("default")))
#if defined(KELCORE_BUILDING)
#define KELCORE_INLINE __attribute__((used))
#else
#define KELCORE_INLINE
#endif
#endif
