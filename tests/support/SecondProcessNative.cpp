#include "tests/support/SecondProcess.h"

#include <sys/wait.h>
#include <unistd.h>

namespace kel::test {

int InSecondProcess(const std::function<int()>& body) {
    const pid_t process = fork();
    if (process == 0)
        _exit(body());
    int status = 0;
    return waitpid(process, &status, /*options*/ 0) == process && WIFEXITED(status) ? WEXITSTATUS(status) : 255;
}

} // namespace kel::test
