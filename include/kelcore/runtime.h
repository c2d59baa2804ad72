#pragma once

/// @file
/// Runtime services: the reference-counted object base and the query for the system's family.

#include <kelcore/runtime/objects.h>
#include <kelcore/runtime/system.h>
