#include "bench/support/Areas.h"
#include "bench/support/Jobs.h"
#include "bench/support/Table.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

namespace {

// Removes the flag from the arguments. @return whether it was there.
bool TakeFlag(int& argc, char** argv, std::string_view flag) {
    char** const end = argv + argc;
    char** const kept = std::remove_if(argv + 1, end, [flag](const char* argument) { return flag == argument; });
    argc = static_cast<int>(kept - argv);
    return kept != end;
}

void AddAllJobs() {
    kel::bench::AddCrcJobs();
    kel::bench::AddStreamJobs();
    kel::bench::AddGraphJobs();
    kel::bench::AddTextJobs();
    kel::bench::AddFormatJobs();
    kel::bench::AddPathJobs();
    kel::bench::AddDirJobs();
    kel::bench::AddThreadJobs();
    kel::bench::AddTimeJobs();
    kel::bench::AddRegistryJobs();
    kel::bench::AddModuleJobs();
    kel::bench::AddPixelJobs();
    kel::bench::AddLayerJobs();
    kel::bench::AddGdiJobs();
    kel::bench::AddRegionJobs();
    kel::bench::AddFontJobs();
    kel::bench::AddPictureJobs();
    kel::bench::AddLoadJobs();
    kel::bench::AddAlbumJobs();
}

bool PrintAllNotes(const kel::bench::Table& table) {
    bool good = true;
    for (const std::string& area : table.Areas())
        good = kel::bench::PrintNotes(area) && good;
    return good;
}

bool PrintSmoke(const kel::bench::Table& table) {
    table.PrintFailures();
    std::printf("bench: %zu jobs ran once, %zu failed\n", table.Jobs(), table.Failures());
    return table.Failures() == 0;
}

} // namespace

/// Takes the options of the benchmark library, and `--smoke`: each job once, one line of report.
int main(int argc, char** argv) {
    const bool smoke = TakeFlag(argc, argv, "--smoke");
    AddAllJobs();
    kel::bench::RegisterJobs(smoke);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    kel::bench::Table table;
    if (benchmark::RunSpecifiedBenchmarks(&table) == 0)
        return 2;
    const bool ran = smoke ? PrintSmoke(table) : table.Print();
    const bool stated = smoke || PrintAllNotes(table);
    return ran && stated ? 0 : 1;
}
