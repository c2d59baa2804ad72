#include "tests/soak/Processes.h"
#include "tests/support/Text.h"

#include <kelcore/registry.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdarg>
#include <filesystem>
#include <random>
#include <thread>

namespace {

using namespace kel::soak;

constexpr int kLanes = 3;
constexpr int kReaders = 2;
constexpr int kKills = 1000;
// A lane's places are written in turn: values, and after them subkeys, whose making and text are one call.
constexpr long kPlaces = 50;
constexpr long kValues = 44;

// What the processes of the kill test tell one another.
struct Report {
    std::atomic<bool> stop{false};
    std::atomic<int> kills{0}, faults{0};
    std::atomic<long> writes{0}, reads{0};
};

// Counts a fault and describes it. @return 1, the exit code for it.
[[gnu::format(printf, 2, 3)]] int Fault(Report& report, const char* format, ...) {
    if (++report.faults <= 20) {
        va_list arguments;
        va_start(arguments, format);
        std::vfprintf(stderr, format, arguments);
        std::fputc('\n', stderr);
        va_end(arguments);
    }
    return 1;
}

// A hive of its own for the processes started from now on; none may have been opened by this process.
struct PrivateHive {
    PrivateHive() {
        REQUIRE(mkdtemp(folder.data()) != nullptr);
        setenv("KELCORE_REGISTRY", (folder + "/registry.db").c_str(), /*overwrite*/ 1);
    }
    PrivateHive(const PrivateHive&) = delete;
    ~PrivateHive() { std::filesystem::remove_all(folder); }

    std::string folder = (std::filesystem::temp_directory_path() / "kelsoak-XXXXXX").string();
};

WideString Numbered(const char* word, long number) {
    return StdA2W(word + std::to_string(number));
}

WideString PlaceName(long place) {
    return Numbered(place < kValues ? "v" : "s", place);
}

// The text number @p number of a lane: its number and what follows from it, over several pages now and then.
WideString TextOf(int lane, long number) {
    std::minstd_rand random(static_cast<unsigned>(number * kLanes + lane + 1));
    std::string text = std::to_string(number) + ":";
    for (std::size_t left = random() % (random() % 8 == 0 ? 9000 : 90); left != 0; --left)
        text += static_cast<char>('a' + random() % 26);
    return StdA2W(text);
}

std::string LanePath(int lane) {
    return "soak\\lane" + std::to_string(lane);
}

RegistryKey OpenLane(int lane) {
    return RegistryKey(HKEY_CURRENT_USER).CreateSubkey(StdA2W(LanePath(lane)), 0, KEY_ALL_ACCESS, nullptr);
}

// What a place of a lane holds: its number, 0 for nothing, -1 for a text that was never written so, -2 for a failure.
//
// One call reads a value as a whole, where the two queries of a RegistryKey may meet two values.
long ReadPlace(int lane, long place) {
    std::string path = LanePath(lane);
    const std::string name = StdW2A(PlaceName(place));
    if (place >= kValues)
        path += "\\" + name;
    HKEY key = nullptr;
    if (const LONG error = RegOpenKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, &key); error != ERROR_SUCCESS)
        return error == ERROR_FILE_NOT_FOUND ? 0 : -2;
    char text[10000];
    DWORD size = sizeof text;
    const LONG error = RegQueryValueExA(key, place < kValues ? name.c_str() : "", nullptr, nullptr,
                                        reinterpret_cast<BYTE*>(text), &size);
    RegCloseKey(key);
    if (error == (place < kValues ? ERROR_FILE_NOT_FOUND : ERROR_KEY_DELETED))
        return 0;
    if (error != ERROR_SUCCESS) // a subkey without its text would be half a call
        return error == ERROR_FILE_NOT_FOUND ? -1 : -2;
    const long number = std::atol(text);
    return number % kPlaces == place && StdA2W(text) == TextOf(lane, number) ? number : -1;
}

bool WritePlace(RegistryKey& key, int lane, long number) {
    const WideString name = PlaceName(number % kPlaces);
    if (number % kPlaces < kValues)
        return key.SetString(name, TextOf(lane, number)) == ERROR_SUCCESS;
    const long error = key.DeleteSubkey(name);
    return (error == ERROR_SUCCESS || error == ERROR_FILE_NOT_FOUND) &&
           key.SetSubkey(name, TextOf(lane, number)) == ERROR_SUCCESS;
}

// Writes the numbers behind @p done and counts each that is done, until it is killed.
int Write(int lane, std::atomic<long>& done) {
    RegistryKey key = OpenLane(lane);
    for (long number = done + 1; WritePlace(key, lane, number); done = number++) {
        if (number % 97 == 0)
            key.Flush();
    }
    return 1;
}

// Looks at a lane after its writer's end. The writer had counted up to @p done; the next number may be there as well,
// or half of it where it is two calls.
// @return the last number written, -1 after a fault.
long CheckLane(Report& report, int lane, long done) {
    if (!OpenLane(lane).IsValid())
        return -Fault(report, "lane %d: the hive does not open", lane);
    long last = done;
    for (long number = done + 1; number > 0 && number > done - kPlaces + 1; --number) {
        const long place = number % kPlaces;
        const long found = ReadPlace(lane, place);
        if (number == done + 1) {
            if (found == number)
                last = number;
            else if (found != std::max(0L, number - kPlaces) && (found != 0 || place < kValues))
                return -Fault(report, "lane %d: number %ld instead of %ld or none", lane, found, number);
        } else if (found != number) {
            return -Fault(report, "lane %d: number %ld instead of %ld, %ld were done", lane, found, number, done);
        }
    }
    return last;
}

// Starts writers of a lane and kills each at a random moment, until time or kills are used up: every second one at any
// moment of its life, the others not before they have written something.
int Supervise(Report& report, int lane, const Effort& effort) {
    using Clock = std::chrono::steady_clock;
    std::mt19937 random(static_cast<unsigned>(lane));
    const auto start = Clock::now();
    auto& last = Shared<long>();
    auto& done = Shared<std::atomic<long>>();
    bool patient = false;
    while (report.kills++ < kKills && std::chrono::duration<double>(Clock::now() - start).count() < effort.seconds) {
        done = last;
        const pid_t writer = Start([&] { return Write(lane, done); });
        patient = !patient;
        for (int waits = 0; patient && done == last && waits != 10000; ++waits)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 60000));
        const int end = Kill(writer);
        if (end != -SIGKILL)
            return Fault(report, "lane %d: a writer has ended by itself (%d) after %ld", lane, end, done.load());
        report.writes += done - last;
        if (InAnotherProcess([&] { return (last = CheckLane(report, lane, done)) < 0; }) != 0)
            return Fault(report, "lane %d: the check after number %ld has failed", lane, done.load());
    }
    --report.kills;
    return 0;
}

// Reads all lanes over and over. What was there once, with all written before it, stays.
int Read(Report& report) {
    std::array<long, kLanes> newest{};
    while (!report.stop) {
        for (int i = 0; i != kLanes * kPlaces; ++i, ++report.reads) {
            const int lane = i % kLanes;
            const long place = i / kLanes;
            const long number = ReadPlace(lane, place);
            const bool lost = place < kValues && number <= newest[lane] - kPlaces;
            if (number < 0 || lost)
                return Fault(report, "lane %d: number %ld read at place %ld after %ld", lane, number, place,
                             newest[lane]);
            newest[lane] = std::max(newest[lane], number);
        }
    }
    return 0;
}

} // namespace

TEST_CASE("writers are killed at any moment: nothing committed is lost, nothing half-written seen") {
    const PrivateHive hive;
    const Effort effort;
    auto& report = Shared<Report>();
    std::vector<pid_t> readers, supervisors;
    for (int lane = 0; lane != kLanes; ++lane)
        supervisors.push_back(Start([&, lane] { return Supervise(report, lane, effort); }));
    for (int i = 0; i != kReaders; ++i)
        readers.push_back(Start([&] { return Read(report); }));
    for (const pid_t supervisor : supervisors)
        CHECK(WaitFor(supervisor) == 0);
    report.stop = true;
    for (const pid_t reader : readers)
        CHECK(WaitFor(reader) == 0);
    CHECK(report.faults == 0);
    CHECK(2 * report.writes >= report.kills);
    CHECK(report.reads > 0);
    CHECK((report.kills == kKills || !effort.all));
    std::printf("%d writers killed, %ld writes reported by them, %ld reads meanwhile, %d faults\n", report.kills.load(),
                report.writes.load(), report.reads.load(), report.faults.load());
}

TEST_CASE("eight processes write at once and all their values are there") {
    constexpr int kWriters = 8;
    const PrivateHive hive;
    const int count = Effort().Of(/*most*/ 10000, /*eachSecond*/ 200);
    std::vector<pid_t> writers;
    for (int lane = 0; lane != kWriters; ++lane)
        writers.push_back(Start([=] {
            RegistryKey key = OpenLane(lane);
            int failed = 0;
            for (int i = 0; i != count; ++i)
                failed += key.SetString(Numbered("value", i), Numbered("text", i + lane)) != ERROR_SUCCESS;
            return failed != 0;
        }));
    for (const pid_t writer : writers)
        CHECK(WaitFor(writer) == 0);
    const auto missing = [=](int lane) {
        std::vector<WideString> names, texts;
        const bool listed = OpenLane(lane).GetAllStrings(names, texts) == ERROR_SUCCESS;
        bool whole = listed && names.size() == static_cast<std::size_t>(count);
        for (int i = 0; whole && i != count; ++i)
            whole = texts[i] == Numbered("text", std::atoi(StdW2A(names[i]).c_str() + 5) + lane);
        return whole ? 0 : 1;
    };
    int whole = 0;
    for (int lane = 0; lane != kWriters; ++lane)
        whole += InAnotherProcess([=] { return missing(lane); }) == 0;
    CHECK(whole == kWriters);
    std::printf("%d processes wrote %d values each at once; those of %d are all there\n", kWriters, count, whole);
}
