// kelarchive: files and folders in one archive of checksummed blocks, as an object graph.

#include "Listing.h"
#include "Packing.h"
#include "Report.h"
#include "Unpacking.h"

#include <kelcore/text.h>

#include <cstdio>
#include <new>
#include <string>
#include <vector>

namespace {

constexpr int kFailed = 1;
constexpr int kMisused = 2;

const char kUsage[] = "usage: kelarchive pack [--scramble] ARCHIVE PATH...   make an archive\n"
                      "       kelarchive list ARCHIVE                       show what is in it\n"
                      "       kelarchive verify ARCHIVE                     check every block\n"
                      "       kelarchive unpack ARCHIVE DIR                 bring everything back into DIR\n";

struct Command {
    std::string verb;
    bool scramble = false;
    std::vector<WideString> paths;
};

Command Parse(int count, char** arguments) {
    Command command;
    for (int i = 1; i < count; ++i) {
        const std::string argument = arguments[i];
        if (argument == "--scramble")
            command.scramble = true;
        else if (command.verb.empty())
            command.verb = argument;
        else
            command.paths.push_back(StdA2W(argument));
    }
    return command;
}

// Whether the command was one that could be carried out.
bool Run(const Command& command) {
    const auto& paths = command.paths;
    if (command.verb == "pack" && paths.size() >= 2)
        kelarchive::Pack(paths[0], {paths.begin() + 1, paths.end()}, command.scramble);
    else if (command.verb == "list" && paths.size() == 1)
        kelarchive::List(paths[0]);
    else if (command.verb == "verify" && paths.size() == 1)
        kelarchive::Verify(paths[0]);
    else if (command.verb == "unpack" && paths.size() == 2)
        kelarchive::Unpack(paths[0], paths[1]);
    else
        return false;
    return true;
}

int Fail(const std::string& line) {
    std::fflush(stdout);
    std::fprintf(stderr, "kelarchive: %s\n", line.c_str());
    return kFailed;
}

} // namespace

int main(int count, char** arguments) {
    try {
        if (Run(Parse(count, arguments)))
            return std::fflush(stdout) == 0 ? 0 : Fail("cannot write the output");
        std::fputs(kUsage, stderr);
        return kMisused;
    } catch (const kelexamples::Failure& failure) {
        return Fail(failure.line);
    } catch (const std::bad_alloc&) {
        return Fail("out of memory");
    }
}
