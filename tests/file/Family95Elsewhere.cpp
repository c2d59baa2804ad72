#include <doctest/doctest.h>

TEST_CASE("on the 95 family a region's offset has 32 bits and a sign") {
    MESSAGE("the system cannot be made to report another family here");
}
