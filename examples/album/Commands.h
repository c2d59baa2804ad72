#pragma once

#include <kelcore/widestring.h>

#include <map>
#include <string>
#include <vector>

/// The program's commands, one function each.
namespace kelalbum {

/// What follows a command on the command line.
struct Arguments {
    /// The arguments that are no options, in their order; as many as the command takes.
    std::vector<WideString> values;
    /// "--mode" -> "fit": those that were given, of the ones that the command knows.
    std::map<std::string, WideString> options;

    /// @return the option's value, or @p otherwise if it was not given.
    WideString Option(const std::string& name, const WideString& otherwise) const;
};

/// A command line that asks for something that there is not; the program shows the line and its usage. Thrown by value.
struct Misuse {
    std::string line;
};

/// Each carries out one command and answers the program's exit code: 0, or 1 if something had to be left out, which has
/// been reported then. What ends a command is thrown as a Failure or a Misuse.
int Pack(const Arguments& arguments);
int List(const Arguments& arguments);
int Verify(const Arguments& arguments);
int Sheet(const Arguments& arguments);
int Effect(const Arguments& arguments);
int Extract(const Arguments& arguments);

} // namespace kelalbum
