#pragma once

#include <functional>

namespace kel::test {

/// Runs @p body in another process and waits for it. What it opens is another process's; checks are no use in it.
/// @return what the body returns (0 to 255), or -1 where the test program cannot start one: off the platform layer.
int InSecondProcess(const std::function<int()>& body);

} // namespace kel::test
