#include "tests/support/SecondProcess.h"

#include <doctest/doctest.h>

namespace kel::test {

SecondProcess::SecondProcess(const std::function<int(std::uint64_t)>&) {
    static_cast<void>(m_process);
    MESSAGE("a test program cannot start a second process here");
}

SecondProcess::~SecondProcess() = default;

int SecondProcess::Ask(std::uint64_t) {
    return -1;
}

} // namespace kel::test
