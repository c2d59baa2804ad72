// Test programs leave the user's registry alone: each has one of its own, in memory, unless it is told otherwise.

#include <cstdlib>

namespace {

[[maybe_unused]] const int g_set = setenv("KELCORE_REGISTRY", ":memory:", /*overwrite*/ 0);

} // namespace
