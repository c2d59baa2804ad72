#include "bench/support/Jobs.h"

#include <cstdio>
#include <exception>
#include <map>
#include <memory>
#include <optional>

namespace kel::bench {
namespace {

struct Job {
    std::string area;
    std::string who;
    std::string work;
    std::function<Call()> make;
    Clock clock;
    std::optional<Call> call = {};
};

struct Note {
    std::string area;
    std::function<std::string()> state;
};

std::vector<std::shared_ptr<Job>>& Jobs() {
    static std::vector<std::shared_ptr<Job>> jobs;
    return jobs;
}

std::vector<Note>& Notes() {
    static std::vector<Note> notes;
    return notes;
}

// The hash of what a work gives, and who gave it first.
struct Outcome {
    std::size_t hash;
    std::string who;
};

void CompareWithOthers(const Job& job) {
    static std::map<std::string, Outcome> outcomes;
    if (!job.call->result)
        return;
    const Outcome own{std::hash<std::string>()(job.call->result()), job.who};
    const Outcome& first = outcomes.try_emplace(job.area + '/' + job.work, own).first->second;
    if (first.hash != own.hash)
        throw std::runtime_error("another result than that of " + first.who);
}

void Prepare(Job& job) {
    if (job.call)
        return;
    job.call = job.make();
    try {
        CompareWithOthers(job);
    } catch (...) {
        job.call.reset();
        throw;
    }
}

void Repeat(benchmark::State& state, const Call& call) {
    for ([[maybe_unused]] auto iteration : state) {
        call.run();
        if (!call.clear)
            continue;
        state.PauseTiming();
        call.clear();
        state.ResumeTiming();
    }
}

void Run(benchmark::State& state, Job& job) {
    try {
        Prepare(job);
        Repeat(state, *job.call);
    } catch (const std::exception& failure) {
        state.SkipWithError(failure.what());
    } catch (...) {
        state.SkipWithError("an exception of the library");
    }
}

} // namespace

void AddJob(const std::string& area, const std::string& who, const std::string& work, std::function<Call()> make,
            Clock clock) {
    Jobs().push_back(std::make_shared<Job>(Job{area, who, work, std::move(make), clock}));
}

void AddNote(const std::string& area, std::function<std::string()> state) {
    Notes().push_back({area, std::move(state)});
}

void RegisterJobs(bool once) {
    for (const auto& job : Jobs()) {
        const std::string name = job->area + '/' + job->who + '/' + job->work;
        const auto run = [job](benchmark::State& state) { Run(state, *job); };
        benchmark::internal::Benchmark* registered = benchmark::RegisterBenchmark(name.c_str(), run);
        if (job->clock == Clock::Wall)
            registered->UseRealTime();
        if (once)
            registered->Iterations(1);
    }
}

bool PrintNotes(const std::string& area) {
    bool good = true;
    for (const Note& note : Notes()) {
        if (note.area != area)
            continue;
        try {
            std::printf("\n%s: %s\n", area.c_str(), note.state().c_str());
        } catch (const std::exception& failure) {
            std::fprintf(stderr, "%s: %s\n", area.c_str(), failure.what());
            good = false;
        }
    }
    return good;
}

} // namespace kel::bench
