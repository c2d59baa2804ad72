#include <doctest/doctest.h>

TEST_CASE("on the 95 family transparent and alpha draws take their own roads") {
    MESSAGE("the system cannot be made to report another family here");
}
