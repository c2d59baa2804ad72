#pragma once

#include <sys/types.h>

#include <functional>
#include <new>
#include <string>

/// Processes that a soak starts, kills and counts. All of them are copies of this one.
namespace kel::soak {

/// Starts @p body in a process of its own, which ends with what it returns.
pid_t Start(const std::function<int()>& body);

/// Waits for the end. @return the exit code, minus the signal's number if a signal ended it.
int WaitFor(pid_t process);

/// Kills @p process, whatever it does just now. @return as WaitFor.
int Kill(pid_t process);

/// Runs @p body in a process of its own, so that it opens anew what its caller must not hold. @return as WaitFor.
inline int InAnotherProcess(const std::function<int()>& body) {
    return WaitFor(Start(body));
}

/// A pipe, for counters from a process that is going to be killed. A number arrives whole or not at all.
class Line {
public:
    Line();
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;
    ~Line();

    bool Send(long number) const;
    /// Waits for a number that was sent. The caller itself sends none from then on.
    /// @return whether there was one; false when every sender is gone.
    bool Next(long& number);

private:
    int m_ends[2];
};

void* ShareMemory(std::size_t bytes);

/// A value that the processes started after its making share. It is left to the end of the program.
template <class Value>
Value& Shared() {
    return *new (ShareMemory(sizeof(Value))) Value();
}

/// How long to run: the seconds in KELCORE_SOAK, "all" for as long as everything takes, else short.
struct Effort {
    double seconds = 2.5;
    bool all = false;

    static Effort Asked();
    int Of(int most, double eachSecond) const;
};

/// A hive of its own for the processes started from now on; none may have been opened by this process. It goes with
/// this object.
class PrivateHive {
public:
    PrivateHive();
    PrivateHive(const PrivateHive&) = delete;
    PrivateHive& operator=(const PrivateHive&) = delete;
    ~PrivateHive();

private:
    std::string m_folder;
};

} // namespace kel::soak
