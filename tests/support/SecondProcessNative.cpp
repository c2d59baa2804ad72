#include "tests/support/SecondProcess.h"

#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

namespace kel::test {
namespace {

[[noreturn]] void Serve(int line, const std::function<int(std::uint64_t)>& answer) {
    std::uint64_t question;
    while (read(line, &question, sizeof question) == sizeof question) {
        const int result = answer(question);
        if (write(line, &result, sizeof result) != sizeof result)
            break;
    }
    _exit(0);
}

} // namespace

SecondProcess::SecondProcess(const std::function<int(std::uint64_t)>& answer) {
    int line[2];
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, /*protocol*/ 0, line) != 0)
        return;
    std::fflush(nullptr); // else both processes write what is held back
    m_process = fork();
    if (m_process == 0) {
        close(line[0]);
        Serve(line[1], answer);
    }
    close(line[1]);
    m_line = line[0];
}

SecondProcess::~SecondProcess() {
    close(m_line);
    waitpid(m_process, nullptr, /*options*/ 0);
}

int SecondProcess::Ask(std::uint64_t question) {
    int answer = -1;
    const bool asked = write(m_line, &question, sizeof question) == sizeof question;
    return asked && read(m_line, &answer, sizeof answer) == sizeof answer ? answer : -1;
}

} // namespace kel::test
