#include "platform/user/WindowClasses.h"

#include "platform/gdi/GdiObject.h"
#include "platform/kernel/Faults.h"
#include "platform/modules/Module.h"
#include "platform/user/SystemColours.h"

#include <kelcore/platform/resources.h>

#include <cstring>
#include <mutex>
#include <vector>

namespace kel::platform {
namespace {

constexpr std::size_t kLongestName = 255;
constexpr ATOM kFirstAtom = 0xC000;

struct ClassList {
    std::mutex mutex;
    std::vector<std::shared_ptr<WindowClass>> classes;
    std::vector<std::string> atoms; ///< the names, by their atoms: a name keeps its own
};

ClassList& List() {
    static ClassList& list = *new ClassList; // outlives static objects that own windows
    return list;
}

std::string InLowerCase(const char* name) {
    std::string lower(name);
    for (char& letter : lower)
        if (letter >= 'A' && letter <= 'Z')
            letter = static_cast<char>(letter + ('a' - 'A'));
    return lower;
}

// Null stands for the program, whose handle is not null.
const void* ModuleOf(HINSTANCE instance) {
    if (instance)
        return instance;
    const auto program = FindModule(nullptr);
    return program ? program->Handle() : nullptr;
}

bool Names(LPCSTR name, const WindowClass& c) {
    if (IS_INTRESOURCE(name))
        return reinterpret_cast<ULONG_PTR>(name) == c.atom;
    return InLowerCase(name) == c.name;
}

ATOM AtomOf(ClassList& list, const std::string& name) {
    std::size_t index = 0;
    while (index < list.atoms.size() && list.atoms[index] != name)
        ++index;
    if (index == list.atoms.size())
        list.atoms.push_back(name);
    return static_cast<ATOM>(kFirstAtom + index);
}

// The list is locked.
std::vector<std::shared_ptr<WindowClass>>::iterator FindIn(ClassList& list, LPCSTR name, const void* module) {
    auto found = list.classes.begin();
    while (found != list.classes.end() && !((*found)->module == module && Names(name, **found)))
        ++found;
    return found;
}

bool IsComplete(const WNDCLASSA& description) {
    const char* const name = description.lpszClassName;
    return description.lpfnWndProc && !IS_INTRESOURCE(name) && *name && std::strlen(name) <= kLongestName;
}

ATOM Register(const WNDCLASSA& description) {
    if (!IsComplete(description))
        return Fail(ERROR_INVALID_PARAMETER);
    const void* const module = ModuleOf(description.hInstance);
    const std::lock_guard guard(List().mutex);
    if (FindIn(List(), description.lpszClassName, module) != List().classes.end())
        return Fail(ERROR_CLASS_ALREADY_EXISTS);
    auto made = std::make_shared<WindowClass>();
    made->name = InLowerCase(description.lpszClassName);
    made->module = module;
    made->style = description.style;
    made->procedure = description.lpfnWndProc;
    made->background = description.hbrBackground;
    made->atom = AtomOf(List(), made->name);
    List().classes.push_back(made);
    return made->atom;
}

bool Unregister(LPCSTR name, HINSTANCE instance) {
    const void* const module = ModuleOf(instance);
    const std::lock_guard guard(List().mutex);
    const auto found = FindIn(List(), name, module);
    if (found == List().classes.end())
        return Fail(ERROR_CLASS_DOES_NOT_EXIST);
    if ((*found)->windows != 0)
        return Fail(ERROR_CLASS_HAS_WINDOWS);
    const auto brush = FindAnyObject((*found)->background);
    if (brush && brush->Type() == GdiType::Brush && !brush->IsStock())
        RemoveObject(*brush);
    List().classes.erase(found);
    return true;
}

// An index of a colour is less than any handle.
constexpr ULONG_PTR kMostColours = 0x100;

} // namespace

HBRUSH WindowClass::Background() const {
    const auto value = reinterpret_cast<ULONG_PTR>(background);
    return value == 0 || value > kMostColours ? background : SystemBrush(static_cast<int>(value) - 1);
}

std::shared_ptr<WindowClass> FindClass(LPCSTR name, HINSTANCE instance) {
    const void* const module = ModuleOf(instance);
    const std::lock_guard guard(List().mutex);
    const auto own = name ? FindIn(List(), name, module) : List().classes.end();
    if (own != List().classes.end())
        return *own;
    for (const auto& c : List().classes)
        if (name && c->style & CS_GLOBALCLASS && Names(name, *c))
            return c;
    return Fail(ERROR_CANNOT_FIND_WND_CLASS), nullptr;
}

} // namespace kel::platform

using namespace kel::platform;

ATOM WINAPI RegisterClassA(const WNDCLASSA* description) {
    if (CallFails("RegisterClassA"))
        return 0;
    if (!description)
        return Fail(ERROR_INVALID_PARAMETER);
    return WithMemory(ATOM(), [&] { return Register(*description); });
}

ATOM WINAPI RegisterClassExA(const WNDCLASSEXA* description) {
    if (CallFails("RegisterClassExA"))
        return 0;
    if (!description || description->cbSize != sizeof *description)
        return Fail(ERROR_INVALID_PARAMETER);
    const WNDCLASSEXA& d = *description;
    const WNDCLASSA plain = {d.style, d.lpfnWndProc, d.cbClsExtra,    d.cbWndExtra,   d.hInstance,
                             d.hIcon, d.hCursor,     d.hbrBackground, d.lpszMenuName, d.lpszClassName};
    return WithMemory(ATOM(), [&] { return Register(plain); });
}

BOOL WINAPI UnregisterClassA(LPCSTR name, HINSTANCE instance) {
    if (CallFails("UnregisterClassA"))
        return FALSE;
    if (!name)
        return Fail(ERROR_CLASS_DOES_NOT_EXIST);
    return WithMemory(false, [&] { return Unregister(name, instance); });
}
