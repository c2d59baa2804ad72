#pragma once

/// @file
/// Runtime services: modules and their languages, the reference-counted object base, the query for the system's family.

#include <kelcore/runtime/modules.h>
#include <kelcore/runtime/objects.h>
#include <kelcore/runtime/system.h>
