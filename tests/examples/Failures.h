#pragma once

#include "Report.h"

#include "tests/support/Faults.h"
#include "tests/support/TempFolder.h"

#include <doctest/doctest.h>
#include <kelcore/file.h>

// What CHECK_THROWS_WITH compares.
REGISTER_EXCEPTION_TRANSLATOR(const kelexamples::Failure& failure) {
    return failure.line.c_str();
}

/// Whether @p act ends without a failure, which else has a line to show.
template <class Act>
bool Succeeds(const Act& act) {
    try {
        act();
    } catch (const kelexamples::Failure& failure) {
        CHECK_FALSE(failure.line.empty());
        return false;
    }
    return true;
}
