#include <doctest/doctest.h>

TEST_CASE("on the 95 family characters are measured by their bytes") {
    MESSAGE("the system cannot be made to report another family here");
}
