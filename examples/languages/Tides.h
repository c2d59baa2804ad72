#pragma once

#include "keltides_export.h"

#include <kelcore/text.h>

/// A line about high water on one of the next three days, in the current language.
/// @param day 0 to 2.
KELTIDES_EXPORT String TideOn(int day);
