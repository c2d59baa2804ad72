#pragma once

#include <kelcore/platform/base.h>
