#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace kel::bench {

/// Collects the repetitions of every job and prints, for each area, a table in Markdown: kelcore's median and its ratio
/// to the best peer and to the quickest limit of the same work.
///
/// The times are processor times of the one thread that works: as no such job waits for anything, on an idle machine
/// they are those of the clock, and on a busy one they are disturbed less. Work of several threads is timed by the
/// clock.
class Table : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;

    /// Prints the machine and the tables. @return false if a job failed; each failure is printed as a line.
    bool Print() const;
    /// The areas that ran, in the order of their names.
    std::vector<std::string> Areas() const;
    /// How many jobs ran, and how many of them failed.
    std::size_t Jobs() const { return m_jobs.size(); }
    std::size_t Failures() const { return m_failures.size(); }
    /// Prints a line for each job that failed.
    void PrintFailures() const;

private:
    struct Job {
        std::string area;
        std::string who;
        std::string work;
        std::vector<double> seconds; // of each repetition
    };

    using Row = std::vector<const Job*>;

    Job& JobOf(const std::string& name);
    std::vector<Row> RowsOf(const std::string& area) const;
    static void PrintRow(const Row& row);

    std::vector<Job> m_jobs; // in the order of their first repetition
    std::map<std::string, std::string> m_failures;
};

} // namespace kel::bench
