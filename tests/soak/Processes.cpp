#include "tests/soak/Processes.h"

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>

namespace kel::soak {

pid_t Start(const std::function<int()>& body) {
    std::fflush(nullptr); // else both processes write what is held back
    const pid_t process = fork();
    if (process == 0)
        _exit(body());
    if (process < 0)
        throw std::runtime_error("no further process can be started");
    return process;
}

int WaitFor(pid_t process) {
    int status = 0;
    if (waitpid(process, &status, /*options*/ 0) != process)
        throw std::runtime_error("a process is lost");
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

int Kill(pid_t process) {
    kill(process, SIGKILL);
    return WaitFor(process);
}

Line::Line() {
    if (pipe(m_ends) != 0)
        throw std::runtime_error("no pipe can be made");
}

Line::~Line() {
    close(m_ends[0]);
    if (m_ends[1] != -1)
        close(m_ends[1]);
}

bool Line::Send(long number) const {
    return write(m_ends[1], &number, sizeof number) == sizeof number;
}

bool Line::Next(long& number) {
    if (m_ends[1] != -1)
        close(m_ends[1]);
    m_ends[1] = -1;
    return read(m_ends[0], &number, sizeof number) == sizeof number;
}

void* ShareMemory(std::size_t bytes) {
    void* const memory =
        mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, /*file*/ -1, /*offset*/ 0);
    if (memory == MAP_FAILED)
        throw std::bad_alloc();
    return memory;
}

Effort Effort::Asked() {
    Effort effort;
    if (const char* asked = std::getenv("KELCORE_SOAK")) {
        effort.all = std::strcmp(asked, "all") == 0;
        effort.seconds = effort.all ? 1e9 : std::atof(asked);
    }
    return effort;
}

int Effort::Of(int most, double eachSecond) const {
    return static_cast<int>(std::clamp(seconds * eachSecond, 1.0, static_cast<double>(most)));
}

PrivateHive::PrivateHive() {
    std::string pattern = (std::filesystem::temp_directory_path() / "kelsoak-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr)
        throw std::runtime_error("no folder for the hive");
    m_folder = pattern;
    setenv("KELCORE_REGISTRY", (m_folder + "/registry.db").c_str(), /*overwrite*/ 1);
}

PrivateHive::~PrivateHive() {
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
}

} // namespace kel::soak
