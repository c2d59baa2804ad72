// Takes a text from the program's own resources. Exits with 0 when it is the right one.

#include <kelcore/runtime.h>

#include <iostream>

int main() {
    String text;
    const bool found = ModuleBase::LoadStringA(GetModuleHandleA(nullptr), 1, text, 0, -1);
    std::cout << StdW2A(text) << "\n";
    return found && text == u"Grüße aus dem Modul"_w ? 0 : 1;
}
