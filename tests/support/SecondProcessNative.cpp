#include "tests/support/SecondProcess.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

namespace kel::test {

int InSecondProcess(const std::function<int()>& body) {
    std::fflush(nullptr); // else both processes write what is held back
    const pid_t process = fork();
    if (process == 0)
        _exit(body());
    int status = 0;
    return waitpid(process, &status, /*options*/ 0) == process && WIFEXITED(status) ? WEXITSTATUS(status) : 255;
}

} // namespace kel::test
