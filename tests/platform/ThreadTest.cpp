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
        REQUIRE(
            DuplicateHandle(GetCurrentProcess(), m_own, GetCurrentProcess(), &m_copy, 0, FALSE, DUPLICATE_SAME_ACCESS));
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

// An address among those of the calling thread's stack, some bytes further down.
bool HasStack(std::size_t bytes) {
    ULONG_PTR low = 0, high = 0;
    GetCurrentThreadStackLimits(&low, &high);
    return high - low >= bytes;
}

} // namespace

TEST_CASE("a semaphore counts from its start to its maximum") {
    const struct {
        LONG initial, maximum;
        DWORD error;
    } limits[] = {{0, 1, 0}, {1, 1, 0}, {2, 1, 87}, {-1, 1, 87}, {0, 0, 87}, {0, -1, 87}, {0, 0x7FFFFFFF, 0}};
    for (const auto& row : limits) {
        CAPTURE(row.initial);
        CAPTURE(row.maximum);
        SetLastError(777);
        const HANDLE made = CreateSemaphoreA(nullptr, row.initial, row.maximum, nullptr);
        CHECK((made == nullptr) == (row.error != 0));
        CHECK(GetLastError() == row.error);
        CloseHandle(made);
    }
    const HANDLE semaphore = CreateSemaphoreA(nullptr, 1, 3, nullptr);
    const struct {
        LONG count;
        DWORD error;
        LONG previous;
        bool alike = true; // on Wine
    } releases[] = {{0, 87, -7, false},    {-1, 87, -7, false}, {3, 298, -7},
                    {0x7FFFFFFF, 298, -7}, {2, 0, 1},           {1, 298, -7}};
    for (const auto& row : releases) {
        CAPTURE(row.count);
        LONG previous = -7;
        if (!row.alike && !kOnLayer)
            continue;
        CHECK(ErrorOf(ReleaseSemaphore(semaphore, row.count, &previous)) == row.error);
        CHECK(previous == row.previous);
    }
    for (int i = 0; i < 3; ++i)
        CHECK(WaitForSingleObject(semaphore, i == 0 ? INFINITE : 0) == WAIT_OBJECT_0);
    for (const DWORD milliseconds : {0, 1, 20}) {
        const ULONGLONG begin = GetTickCount64();
        CHECK(WaitForSingleObject(semaphore, milliseconds) == WAIT_TIMEOUT);
        CHECK(GetTickCount64() + 1 - begin >= milliseconds);
    }
    CloseHandle(semaphore);
    if (kOnLayer)
        CHECK(ErrorOf(CreateSemaphoreA(nullptr, 0, 1, "name") != nullptr) == ERROR_NOT_SUPPORTED);
}

TEST_CASE("waits, releases and priorities refuse other handles") {
    const Workplace place;
    const Opened file("a", kReadWrite, 0, CREATE_ALWAYS);
    const HANDLE semaphore = CreateSemaphoreA(nullptr, 0, 1, nullptr);
    const auto refused = [](HANDLE handle, bool waits, bool counts) {
        CHECK((waits || WaitForSingleObject(handle, 0) == WAIT_FAILED));
        CHECK((waits || GetLastError() == ERROR_INVALID_HANDLE));
        CHECK((counts || ErrorOf(ReleaseSemaphore(handle, 1, nullptr)) == ERROR_INVALID_HANDLE));
        CHECK(ErrorOf(SetThreadPriority(handle, THREAD_PRIORITY_NORMAL)) == ERROR_INVALID_HANDLE);
        CHECK(GetThreadPriority(handle) == THREAD_PRIORITY_ERROR_RETURN);
    };
    refused(nullptr, false, false);
    refused(file, /*waits*/ !kOnLayer, /*counts*/ !kOnLayer); // the referee takes a file for signalled
    refused(semaphore, true, true);
    CloseHandle(semaphore);
    refused(semaphore, false, false);
}

TEST_CASE("waiters take what is released, each once, and outlive their handle") {
    constexpr int kWaiters = 6;
    const HANDLE tokens = CreateSemaphoreA(nullptr, 0, 100, nullptr);
    std::atomic<int> taken{0};
    kel::test::Tokens waiting;
    {
        std::vector<std::unique_ptr<Running>> waiters;
        for (int i = 0; i < kWaiters; ++i)
            waiters.push_back(std::make_unique<Running>([&] {
                waiting.Put();
                while (WaitForSingleObject(tokens, INFINITE) == WAIT_OBJECT_0 && ++taken <= 1000 - kWaiters)
                    ;
            }));
        for (int i = 0; i < kWaiters; ++i)
            waiting.Take();
        for (int released = 0; released < 1000; ++released)
            while (!ReleaseSemaphore(tokens, 1, nullptr))
                std::this_thread::yield();
    }
    CHECK(taken == 1000);
    CHECK(WaitForSingleObject(tokens, 0) == WAIT_TIMEOUT);
    {
        const Running waiter([&] {
            waiting.Put();
            CHECK(WaitForSingleObject(tokens, kOnLayer ? 30 : 0) != WAIT_OBJECT_0);
        });
        waiting.Take();
        if (kOnLayer)
            CloseHandle(tokens);
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
            CHECK((!kOnLayer || HasStack(1 << 22)));
            mayEnd.Take();
        });
        CHECK(thread.Wait(0) == WAIT_TIMEOUT);
        CHECK(thread.Wait(5) == WAIT_TIMEOUT);
        CHECK(SetThreadPriority(thread.Own(), THREAD_PRIORITY_LOWEST));
        CHECK(GetThreadPriority(thread.Copy()) == THREAD_PRIORITY_LOWEST);
        mayEnd.Put();
        for (int i = 0; i < 2; ++i)
            CHECK(thread.Wait(INFINITE) == WAIT_OBJECT_0);
        while (SetThreadPriority(thread.Own(), THREAD_PRIORITY_LOWEST))
            std::this_thread::yield();
        CHECK(GetLastError() == ERROR_INVALID_HANDLE);
    }
    CHECK(kel::test::ExtraThreadsEnd());
}

TEST_CASE("seven priorities can be set and asked for; new threads are normal") {
    const struct {
        int level;
        int nice;
    } levels[] = {{-15, 19}, {-2, 10}, {-1, 5}, {0, 0}, {1, -5}, {2, -10}, {15, -15}};
    Running([&] {
        const int normal = kel::test::NiceValueOr(0);
        for (const auto& row : levels) {
            CHECK(SetThreadPriority(GetCurrentThread(), row.level));
            CHECK(GetThreadPriority(GetCurrentThread()) == row.level);
            CHECK(kel::test::NiceValueOr(std::min(normal + row.nice, 19)) == std::min(normal + row.nice, 19));
            Running([&] {
                CHECK(GetThreadPriority(GetCurrentThread()) == THREAD_PRIORITY_NORMAL);
                CHECK(kel::test::NiceValueOr(normal) == normal);
            });
        }
        for (const int level : {-16, -14, -7, -3, 3, 6, 14, 16, THREAD_PRIORITY_ERROR_RETURN})
            CHECK(ErrorOf(SetThreadPriority(GetCurrentThread(), level)) == ERROR_INVALID_PARAMETER);
        CHECK(GetThreadPriority(GetCurrentThread()) == 15);
    });
    CHECK(GetThreadPriority(GetCurrentThread()) == THREAD_PRIORITY_NORMAL);
}

TEST_CASE("a critical section lets one thread in, as often as it likes") {
    CRITICAL_SECTION section;
    InitializeCriticalSection(&section);
    int count = 0;
    const auto work = [&] {
        for (int i = 0; i < 5000; ++i) {
            EnterCriticalSection(&section);
            CHECK_UNARY(TryEnterCriticalSection(&section));
            ++count;
            LeaveCriticalSection(&section);
            LeaveCriticalSection(&section);
        }
    };
    { const Running first(work), second(work), third(work); }
    CHECK(count == 15000);
    EnterCriticalSection(&section);
    Running([&] { CHECK_FALSE(TryEnterCriticalSection(&section)); });
    LeaveCriticalSection(&section);
    DeleteCriticalSection(&section);
}
