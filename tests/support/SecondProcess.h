#pragma once

#include <cstdint>
#include <functional>

namespace kel::test {

/// Another process, which serves questions until the object goes. It begins as a copy of this one: make it before the
/// files whose sharing is tested are opened, since it would hold them too.
class SecondProcess {
public:
    /// @param answer runs in the other process, where checks are no use. Answers are 0 to 255.
    explicit SecondProcess(const std::function<int(std::uint64_t question)>& answer);
    SecondProcess(const SecondProcess&) = delete;
    SecondProcess& operator=(const SecondProcess&) = delete;
    ~SecondProcess();

    /// Whether there is one: off the platform layer a test program cannot start it, and says so.
    bool Runs() const { return m_line != -1; }

    /// @return the answer, -1 for none.
    int Ask(std::uint64_t question = 0);

private:
    int m_line = -1;
    int m_process = -1;
};

} // namespace kel::test
