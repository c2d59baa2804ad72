// The members of String that take their text from a module's string resources.

#include <kelcore/text.h>

#include "text/Arguments.h"

#include <kelcore/runtime/modules.h>

namespace {

// The whole string; empty when the module has none of that number.
String WholeString(const ModuleBase& module, unsigned id) {
    String text;
    module.LoadStringA(id, text, /*first*/ 0, /*last*/ -1);
    return text;
}

} // namespace

void String::Format(ModuleBase* module, unsigned int id, ...) {
    const String format = WholeString(*module, id);
    va_list arguments;
    va_start(arguments, id);
    const kel::ListEnd end{arguments};
    FormatString(format, kel::Pass(arguments));
}

void String::FormatMessageA(ModuleBase* module, unsigned int id, ...) {
    const NarrowString format = StdW2A(WholeString(*module, id));
    va_list arguments;
    va_start(arguments, id);
    const kel::ListEnd end{arguments};
    FormatMessageString(format.c_str(), kel::Pass(arguments));
}

bool String::LoadStringA(unsigned int id, int first, int last, ModuleBase* module) {
    return module->LoadStringA(id, *this, first, last);
}
