#pragma once

/// @file
/// The frame of the benchmarks: every job is `area/who/work`, where who is `kelcore`, a peer, or a limit (`limit-…`).

#include <benchmark/benchmark.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kel::bench {

/// One job, ready to run on its input.
struct Call {
    /// The timed work.
    std::function<void()> run;
    /// What the work gives, in a form that all who do it share; compared once, before the first timing. Empty for a
    /// limit that does less than the work.
    std::function<std::string()> result = {};
    /// Puts away what a run has made, untimed; may be empty.
    std::function<void()> clear = {};
};

/// What a job is timed by: the processor time of the thread that works or, for work that other threads take part in,
/// the clock on the wall.
enum class Clock { Processor, Wall };

/// Enters the job. @p make prepares it, input included, when it is first run.
void AddJob(const std::string& area, const std::string& who, const std::string& work, std::function<Call()> make,
            Clock clock = Clock::Processor);

/// Enters a statement about @p area that is made after the tables, when one of its jobs has run. A statement that turns
/// out false throws, and the program fails.
void AddNote(const std::string& area, std::function<std::string()> state);

/// Those who take part in an area; its peers enter themselves, so that a peer that is not installed is just not linked.
template <class Contender>
std::vector<Contender>& Contenders() {
    static std::vector<Contender> all;
    return all;
}

/// Enters a contender from a source of its own: `const Enter<Checksum> entered{{"zlib", &ZlibChecksum}};`
template <class Contender>
struct Enter {
    explicit Enter(Contender contender) { Contenders<Contender>().push_back(std::move(contender)); }
};

/// The job of handling each of @p inputs with @p handle; @p bytes turns what it returns into the shared form.
template <class Input, class Handle, class Bytes>
Call ForEach(std::vector<Input> inputs, Handle handle, Bytes bytes) {
    const auto all = std::make_shared<const std::vector<Input>>(std::move(inputs));
    const auto run = [all, handle] {
        for (const Input& input : *all)
            benchmark::DoNotOptimize(handle(input));
    };
    const auto result = [all, handle, bytes] {
        std::string text;
        for (const Input& input : *all)
            (text += bytes(handle(input))) += '\n';
        return text;
    };
    return {run, result};
}

/// Hands the jobs to the benchmark library. @param once whether each runs one iteration only.
void RegisterJobs(bool once);

/// Makes the statements about @p area. @return false if one was false.
bool PrintNotes(const std::string& area);

} // namespace kel::bench
