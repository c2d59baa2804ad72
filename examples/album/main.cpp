// kelalbum: pictures in one album, with thumbnails and a contact sheet.

#include "Commands.h"
#include "EffectTable.h"
#include "Report.h"

#include <kelcore/text.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <new>

namespace {

using kelalbum::Arguments;
using kelalbum::Misuse;

constexpr int kFailed = 1;
constexpr int kMisused = 2;

const char kUsage[] =
    "usage: kelalbum pack ALBUM PICTURE-OR-FOLDER...            make an album\n"
    "       kelalbum list ALBUM                                 show what is in it\n"
    "       kelalbum verify ALBUM                               check every block and every picture\n"
    "       kelalbum effect ALBUM NAME EFFECT [VALUE] [--out ALBUM]\n"
    "                                                           change a picture, in place or in a copy\n"
    "       kelalbum sheet ALBUM OUT.png [--mode fit|fill|center|stretch|tile]\n"
    "                                                           draw a contact sheet\n"
    "       kelalbum extract ALBUM [NAME...] FOLDER             bring pictures back as PNG files\n"
    "effects:\n";

struct Command {
    const char* verb;
    int (*run)(const Arguments& arguments);
    std::size_t least; ///< how many values it takes
    std::size_t most;
    const char* option; ///< the one it knows, or null
};

constexpr std::size_t kAny = static_cast<std::size_t>(-1);

const Command kCommands[] = {
    {"pack", kelalbum::Pack, 2, kAny, nullptr},  {"list", kelalbum::List, 1, 1, nullptr},
    {"verify", kelalbum::Verify, 1, 1, nullptr}, {"effect", kelalbum::Effect, 3, 4, "--out"},
    {"sheet", kelalbum::Sheet, 2, 2, "--mode"},  {"extract", kelalbum::Extract, 2, kAny, nullptr},
};

const Command& FindCommand(const std::string& verb) {
    const auto* const found =
        std::find_if(std::begin(kCommands), std::end(kCommands), [&](const auto& known) { return known.verb == verb; });
    if (found == std::end(kCommands))
        throw Misuse{"there is no command " + verb};
    return *found;
}

Arguments Parse(const Command& command, int count, char** texts) {
    Arguments arguments;
    for (int i = 0; i < count; ++i) {
        const std::string text = texts[i];
        if (text.compare(0, 2, "--") != 0)
            arguments.values.push_back(StdA2W(text));
        else if (!command.option || text != command.option || i + 1 == count)
            throw Misuse{std::string(command.verb) + " does not understand " + text};
        else
            arguments.options[text] = StdA2W(texts[++i]);
    }
    if (arguments.values.size() < command.least || arguments.values.size() > command.most)
        throw Misuse{std::string(command.verb) + " takes other arguments"};
    return arguments;
}

int Run(int count, char** arguments) {
    if (count < 2)
        throw Misuse{"what is to be done?"};
    const Command& command = FindCommand(arguments[1]);
    return command.run(Parse(command, count - 2, arguments + 2));
}

int Fail(const std::string& line) {
    std::fflush(stdout);
    std::fprintf(stderr, "kelalbum: %s\n", line.c_str());
    return kFailed;
}

int ShowUsage(const Misuse& misuse) {
    std::fprintf(stderr, "kelalbum: %s\n%s%s", misuse.line.c_str(), kUsage, kelalbum::EffectNames().c_str());
    return kMisused;
}

} // namespace

int main(int count, char** arguments) {
    // Names are compared without regard to case, which is that of ASCII alone otherwise.
    std::setlocale(LC_CTYPE, "");
    try {
        const int code = Run(count, arguments);
        return std::fflush(stdout) == 0 ? code : Fail("cannot write the output");
    } catch (const kelalbum::Misuse& misuse) {
        return ShowUsage(misuse);
    } catch (const kelexamples::Failure& failure) {
        return Fail(failure.line);
    } catch (const std::bad_alloc&) {
        return Fail("out of memory");
    }
}
