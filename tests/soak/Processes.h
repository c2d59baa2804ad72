#pragma once

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>
#include <stdexcept>

/// Processes that a soak starts, kills and counts. All of them are copies of this one.
namespace kel::soak {

/// Starts @p body in a process of its own, which ends with what it returns.
inline pid_t Start(const std::function<int()>& body) {
    std::fflush(nullptr); // else both processes write what is held back
    const pid_t process = fork();
    if (process == 0)
        _exit(body());
    if (process < 0)
        throw std::runtime_error("no further process can be started");
    return process;
}

/// Waits for the end. @return the exit code, minus the signal's number if a signal ended it.
inline int WaitFor(pid_t process) {
    int status = 0;
    if (waitpid(process, &status, /*options*/ 0) != process)
        throw std::runtime_error("a process is lost");
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

/// Kills @p process, whatever it does just now. @return as WaitFor.
inline int Kill(pid_t process) {
    kill(process, SIGKILL);
    return WaitFor(process);
}

/// Runs @p body in a process of its own, so that it opens anew what its caller must not hold. @return as WaitFor.
inline int InAnotherProcess(const std::function<int()>& body) {
    return WaitFor(Start(body));
}

/// A value that the processes started after its making share. It is left to the end of the program.
template <class Value>
Value& Shared() {
    void* const memory =
        mmap(nullptr, sizeof(Value), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, /*file*/ -1, /*offset*/ 0);
    if (memory == MAP_FAILED)
        throw std::bad_alloc();
    return *new (memory) Value();
}

/// How long to run: the seconds in KELCORE_SOAK, "all" for as long as everything takes, else short.
struct Effort {
    const char* const asked = std::getenv("KELCORE_SOAK");
    const bool all = asked != nullptr && std::strcmp(asked, "all") == 0;
    const double seconds = all ? 1e9 : asked != nullptr ? std::atof(asked) : 2.5;

    int Of(int most, double eachSecond) const {
        return static_cast<int>(std::clamp(seconds * eachSecond, 1.0, static_cast<double>(most)));
    }
};

} // namespace kel::soak
