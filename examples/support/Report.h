#pragma once

#include <kelcore/text.h>

#include <string>

namespace kelexamples {

/// What ends a command: one clear line for the user. Thrown by value.
struct Failure {
    std::string line;
};

/// @p path as a line of output shows it: in the ANSI code page, with slashes.
std::string Shown(const WideString& path);

/// @p message up to its first line break, in the ANSI code page.
std::string FirstLine(const WideString& message);

/// The system's text for @p code without its line break, or the bare code when it has none.
std::string SystemText(unsigned long code);

/// Throws the Failure "<what> <path>: <the system's text for code>".
[[noreturn]] void FailOn(const char* what, const WideString& path, unsigned long code);

/// "12 files", "1 file".
std::string Counted(unsigned long long count, const char* noun);

/// Bytes in the largest unit that keeps at least one digit before the point: "512 bytes", "1.5 MiB".
std::string Bytes(unsigned long long count);

} // namespace kelexamples
