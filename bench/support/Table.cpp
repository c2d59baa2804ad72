#include "bench/support/Table.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <set>
#include <thread>

namespace kel::bench {
namespace {

constexpr char kLimit[] = "limit-";

// What a row of the table says about one who did the work.
struct Score {
    std::string who;
    double seconds;
};

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

// Half the distance between the quartiles, in per cent of the median: unlike a deviation it does not mind one outlier.
int NoisePercent(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const double spread = values[values.size() * 3 / 4] - values[values.size() / 4];
    return static_cast<int>(std::lround(50 * spread / Median(values)));
}

std::string Printed(const char* format, double value, const char* unit = "") {
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text + std::string(unit);
}

std::string Time(double seconds) {
    if (seconds < 1e-6)
        return Printed("%.3g", seconds * 1e9, " ns");
    if (seconds < 1e-3)
        return Printed("%.3g", seconds * 1e6, " µs");
    return Printed("%.3g", seconds * 1e3, " ms");
}

std::string Named(const Score& score) {
    return score.who + ' ' + Time(score.seconds);
}

std::string Ratio(double seconds, double base) {
    const double ratio = seconds / base;
    return Printed(ratio < 9.95 ? "%.2f" : "%.1f", ratio);
}

// Of the clock that the job asked for, for one iteration.
double Seconds(const benchmark::BenchmarkReporter::Run& run) {
    const bool wall = run.run_name.time_type == "real_time";
    const double time = wall ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
    return time / benchmark::GetTimeUnitMultiplier(run.time_unit);
}

// The machine's own word for its processor, "" where it keeps that elsewhere.
std::string Processor() {
    std::ifstream facts("/proc/cpuinfo");
    for (std::string line; std::getline(facts, line);)
        if (line.rfind("model name", 0) == 0)
            return line.substr(line.find(':') + 2);
    return "";
}

std::string Today() {
    const std::time_t now = std::time(nullptr);
    char text[16];
    std::strftime(text, sizeof text, "%Y-%m-%d", std::localtime(&now));
    return text;
}

// kelcore : best peer : limit, the peer (or without one, the limit) being 1.
std::string Ratios(const std::vector<Score>& own, const std::vector<Score>& peers, const std::vector<Score>& limits) {
    if (peers.empty() && limits.empty())
        return "";
    const double base = peers.empty() ? limits.front().seconds : peers.front().seconds;
    const auto part = [base](const std::vector<Score>& scores) {
        return scores.empty() ? std::string("–") : Ratio(scores.front().seconds, base);
    };
    return part(own) + " : " + part(peers) + " : " + part(limits);
}

// All but the first, as times of the first.
std::string Others(const std::vector<Score>& scores) {
    std::string text;
    for (std::size_t i = 1; i < scores.size(); ++i)
        text += (i > 1 ? ", " : "") + scores[i].who + ' ' + Ratio(scores[i].seconds, scores.front().seconds);
    return text;
}

std::string BestOf(const std::vector<Score>& scores) {
    return scores.empty() ? "–" : Named(scores.front());
}

} // namespace

bool Table::ReportContext(const Context&) {
    return true;
}

void Table::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        if (run.run_type != Run::RT_Iteration)
            continue;
        Job& job = JobOf(run.run_name.function_name);
        if (run.error_occurred)
            m_failures[run.run_name.function_name] = run.error_message;
        else
            job.seconds.push_back(Seconds(run));
    }
}

Table::Job& Table::JobOf(const std::string& name) {
    const std::size_t first = name.find('/');
    const std::size_t second = name.find('/', first + 1);
    const Job wanted{name.substr(0, first), name.substr(first + 1, second - first - 1), name.substr(second + 1), {}};
    const auto same = [&](const Job& job) {
        return job.area == wanted.area && job.who == wanted.who && job.work == wanted.work;
    };
    const auto found = std::find_if(m_jobs.begin(), m_jobs.end(), same);
    return found != m_jobs.end() ? *found : m_jobs.emplace_back(wanted);
}

std::vector<std::string> Table::Areas() const {
    std::set<std::string> areas;
    for (const Job& job : m_jobs)
        areas.insert(job.area);
    return {areas.begin(), areas.end()};
}

std::vector<Table::Row> Table::RowsOf(const std::string& area) const {
    std::map<std::string, Row> rows;
    for (const Job& job : m_jobs)
        if (job.area == area && !job.seconds.empty())
            rows[job.work].push_back(&job);
    std::vector<Row> ordered;
    for (const auto& [work, row] : rows)
        ordered.push_back(row);
    return ordered;
}

void Table::PrintRow(const Row& row) {
    std::vector<Score> own, peers, limits;
    std::string noise;
    for (const Job* job : row) {
        const bool kelcore = job->who == "kelcore";
        const bool limit = job->who.rfind(kLimit, 0) == 0;
        const std::string who = limit ? job->who.substr(sizeof kLimit - 1) : job->who;
        (kelcore ? own : limit ? limits : peers).push_back({who, Median(job->seconds)});
        if (kelcore)
            noise = std::to_string(NoisePercent(job->seconds)) + " %";
    }
    const auto quicker = [](const Score& a, const Score& b) { return a.seconds < b.seconds; };
    std::sort(peers.begin(), peers.end(), quicker);
    std::sort(limits.begin(), limits.end(), quicker);
    std::printf("| %s | %s | %s | %s | %s | %s | %s |\n", row.front()->work.c_str(),
                own.empty() ? "–" : Time(own.front().seconds).c_str(), noise.c_str(),
                Ratios(own, peers, limits).c_str(), BestOf(peers).c_str(), BestOf(limits).c_str(),
                Others(peers).c_str());
}

bool Table::Print() const {
    std::printf("Machine: %u processors, %s; g++ %s; %s\n", std::thread::hardware_concurrency(), Processor().c_str(),
                __VERSION__, Today().c_str());
    for (const std::string& area : Areas()) {
        std::printf("\n## %s\n\n", area.c_str());
        std::puts(
            "| work | kelcore | noise | kelcore : best peer : limit | best peer | limit | other peers (× the best) |");
        std::puts("| --- | --- | --- | --- | --- | --- | --- |");
        for (const Row& row : RowsOf(area))
            PrintRow(row);
    }
    PrintFailures();
    return m_failures.empty();
}

void Table::PrintFailures() const {
    std::fflush(stdout);
    for (const auto& [name, message] : m_failures)
        std::fprintf(stderr, "%s: %s\n", name.c_str(), message.c_str());
}

} // namespace kel::bench
