#pragma once

/// @file
/// Pictures that the imaging toolkit holds: loading, drawing, effects, storing, and loading on a thread of the library.

#include <kelcore/imaging/events.h>
#include <kelcore/imaging/loading.h>
#include <kelcore/imaging/picture.h>
#include <kelcore/imaging/toolkit.h>
