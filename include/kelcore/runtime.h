#pragma once

/// @file
/// Runtime services: modules and their languages, the reference-counted object base, the query for the system's
/// family, worker threads, timers, calendar times.

#include <kelcore/runtime/calendar.h>
#include <kelcore/runtime/modules.h>
#include <kelcore/runtime/objects.h>
#include <kelcore/runtime/system.h>
#include <kelcore/runtime/threads.h>
#include <kelcore/runtime/timers.h>
