#include "Opened.h"

#include "tests/support/Threads.h"
#include "tests/support/Tokens.h"

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

namespace {

// Runs a function on a thread of _beginthread; waited for through a handle of its own.
class Running {
public:
    explicit Running(std::function<void()> work) : m_work(std::move(work)) {
        const auto thread = _beginthread(&Run, /*stackSize*/ 1 << 22, this);
        REQUIRE(thread != static_cast<std::uintptr_t>(-1));
        m_own = reinterpret_cast<HANDLE>(thread);
        m_copy = Duplicate(m_own);
        REQUIRE(m_copy);
        m_begin.Put();
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    ~Running() {
        CHECK(Wait(INFINITE) == WAIT_OBJECT_0);
        CloseHandle(m_copy);
    }

    DWORD Wait(DWORD milliseconds) const { return WaitForSingleObject(m_copy, milliseconds); }
    HANDLE Own() const { return m_own; }
    HANDLE Copy() const { return m_copy; }

private:
    static void Run(void* self) {
        static_cast<Running*>(self)->m_begin.Take();
        static_cast<Running*>(self)->m_work();
    }

    std::function<void()> m_work;
    kel::test::Tokens m_begin;
    HANDLE m_own = nullptr;
    HANDLE m_copy = nullptr;
};

} // namespace

TEST_CASE("a semaphore counts from its start to its maximum") {
    const std::pair<LONG, LONG> refused[] = {{2, 1}, {-1, 1}, {0, 0}};
    for (const auto& [initial, maximum] : refused)
        CHECK(ErrorOf(CreateSemaphoreA(nullptr, initial, maximum, nullptr) != nullptr) == ERROR_INVALID_PARAMETER);
    const HANDLE semaphore = CreateSemaphoreA(nullptr, 1, 3, nullptr);
    LONG previous = -7;
    for (const LONG count : {LONG{3}, LONG{0x7FFFFFFF}})
        CHECK(ErrorOf(ReleaseSemaphore(semaphore, count, &previous)) == ERROR_TOO_MANY_POSTS);
    if (kOnLayer) { // Wine takes these
        CHECK(ErrorOf(ReleaseSemaphore(semaphore, 0, &previous)) == ERROR_INVALID_PARAMETER);
        CHECK(ErrorOf(CreateSemaphoreA(nullptr, 0, 1, "name") != nullptr) == ERROR_NOT_SUPPORTED);
    }
    CHECK(previous == -7);
    CHECK((ReleaseSemaphore(semaphore, 2, &previous) && previous == 1));
    for (const DWORD milliseconds : {DWORD{INFINITE}, DWORD{0}, DWORD{1}})
        CHECK(WaitForSingleObject(semaphore, milliseconds) == WAIT_OBJECT_0);
    for (const DWORD milliseconds : {0, 1, 20}) {
        const ULONGLONG begin = GetTickCount64();
        CHECK(WaitForSingleObject(semaphore, milliseconds) == WAIT_TIMEOUT);
        CHECK(GetTickCount64() + 1 - begin >= milliseconds);
    }
    CloseHandle(semaphore);
}

TEST_CASE("a file is neither waited for nor released nor given a priority") {
    const Workplace place;
    const Opened file("a", kReadWrite, 0, CREATE_ALWAYS);
    CHECK(ErrorOf(SetThreadPriority(file, THREAD_PRIORITY_NORMAL)) == ERROR_INVALID_HANDLE);
    if (!kOnLayer) // the referee takes a file for signalled
        return;
    CHECK(ErrorOf(WaitForSingleObject(file, 0) != WAIT_FAILED) == ERROR_INVALID_HANDLE);
    CHECK(ErrorOf(ReleaseSemaphore(file, 1, nullptr)) == ERROR_INVALID_HANDLE);
}

TEST_CASE("waiters take what is released, each once, and outlive their handle") {
    constexpr int kWaiters = 6;
    const HANDLE tokens = CreateSemaphoreA(nullptr, 0, 1, nullptr);
    std::atomic<int> taken{0};
    {
        std::vector<std::unique_ptr<Running>> waiters;
        for (int i = 0; i < kWaiters; ++i)
            waiters.push_back(std::make_unique<Running>([&] {
                while (WaitForSingleObject(tokens, INFINITE) == WAIT_OBJECT_0 && ++taken <= 1000 - kWaiters)
                    ;
            }));
        for (int released = 0; released < 1000; ++released)
            while (!ReleaseSemaphore(tokens, 1, nullptr))
                std::this_thread::yield();
    }
    CHECK(taken == 1000);
    CHECK(WaitForSingleObject(tokens, 0) == WAIT_TIMEOUT);
    kel::test::Tokens waiting;
    {
        const Running waiter([&] {
            waiting.Put();
            CHECK(WaitForSingleObject(tokens, kOnLayer ? 30 : 0) != WAIT_OBJECT_0);
        });
        waiting.Take();
        CHECK((!kOnLayer || CloseHandle(tokens)));
    }
    CHECK(WaitForSingleObject(tokens, 0) == (kOnLayer ? WAIT_FAILED : WAIT_TIMEOUT));
}

TEST_CASE("a thread's copied handle tells its end, its own handle goes with it") {
    errno = 0;
    CHECK(_beginthread(nullptr, 0, nullptr) == static_cast<std::uintptr_t>(-1));
    CHECK(errno == EINVAL);
    kel::test::Tokens mayEnd;
    {
        const Running thread([&] {
            ULONG_PTR low = 0, high = 0;
            GetCurrentThreadStackLimits(&low, &high);
            CHECK((!kOnLayer || high - low >= 1 << 22));
            mayEnd.Take();
        });
        CHECK(thread.Wait(5) == WAIT_TIMEOUT);
        CHECK(SetThreadPriority(thread.Own(), THREAD_PRIORITY_LOWEST));
        CHECK(GetThreadPriority(thread.Copy()) == THREAD_PRIORITY_LOWEST);
        mayEnd.Put();
        CHECK(thread.Wait(INFINITE) == WAIT_OBJECT_0);
        while (SetThreadPriority(thread.Own(), THREAD_PRIORITY_LOWEST))
            std::this_thread::yield();
        CHECK(GetLastError() == ERROR_INVALID_HANDLE);
    }
    CHECK(kel::test::ExtraThreadsEnd());
}

TEST_CASE("seven priorities can be set and asked for; new threads are normal") {
    Running([&] {
        const int normal = kel::test::NiceValueOr(0);
        const std::pair<int, int> niceOfLevel[] = {{-15, 19}, {-2, 10}, {-1, 5}, {0, 0}, {1, -5}, {2, -10}, {15, -15}};
        for (const auto& [level, nice] : niceOfLevel) {
            CHECK(SetThreadPriority(GetCurrentThread(), level));
            CHECK(GetThreadPriority(GetCurrentThread()) == level);
            CHECK(kel::test::NiceValueOr(std::min(normal + nice, 19)) == std::min(normal + nice, 19));
            Running([&] { CHECK(kel::test::NiceValueOr(normal) == normal); });
        }
        for (const int level : {-16, -3, 3, 16, THREAD_PRIORITY_ERROR_RETURN})
            CHECK(ErrorOf(SetThreadPriority(GetCurrentThread(), level)) == ERROR_INVALID_PARAMETER);
    });
    CHECK(GetThreadPriority(GetCurrentThread()) == THREAD_PRIORITY_NORMAL);
}

TEST_CASE("a critical section lets one thread in, as often as it likes") {
    CRITICAL_SECTION section;
    InitializeCriticalSection(&section);
    int count = 0;
    kel::test::OnThreads(3, [&](int) {
        for (int i = 0; i < 5000; ++i) {
            EnterCriticalSection(&section);
            CHECK_UNARY(TryEnterCriticalSection(&section));
            ++count;
            LeaveCriticalSection(&section);
            LeaveCriticalSection(&section);
        }
    });
    CHECK(count == 15000);
    EnterCriticalSection(&section);
    Running([&] { CHECK_FALSE(TryEnterCriticalSection(&section)); });
    LeaveCriticalSection(&section);
    DeleteCriticalSection(&section);
}
