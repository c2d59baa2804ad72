#include "tests/support/SecondProcess.h"

namespace kel::test {

int InSecondProcess(const std::function<int()>&) {
    return -1;
}

} // namespace kel::test
