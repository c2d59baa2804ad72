#pragma once

/// @file
/// Everything the library offers.

#include <kelcore/bitmap.h>
#include <kelcore/file.h>
#include <kelcore/gdi.h>
#include <kelcore/picture.h>
#include <kelcore/registry.h>
#include <kelcore/runtime.h>
#include <kelcore/stream.h>
#include <kelcore/text.h>
