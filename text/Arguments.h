#pragma once

#include <cstdarg>

/// How the members of String hand variable arguments on: as a pointer to the caller's list, in the shape that the
/// system's message formatter takes.
namespace kel {

/// Ends a list however its function is left.
struct ListEnd {
    va_list& list;
    ~ListEnd() { va_end(list); }
};

inline char** Pass(va_list& list) {
    return reinterpret_cast<char**>(&list);
}

inline va_list* Received(char** arguments) {
    return reinterpret_cast<va_list*>(arguments);
}

} // namespace kel
