#include <kelcore/runtime/modules.h>

#include "runtime/ModuleState.h"

#include <kelcore/file.h>

#include <algorithm>

namespace {

kel::ModuleState::State& State() noexcept {
    return kel::ModuleState::Get();
}

} // namespace

ModuleBase::ModuleBase() : m_hInstance(nullptr), m_hResource(nullptr) {
    if (State().language == 0)
        State().language = GetSystemDefaultLangID();
}

ModuleBase::~ModuleBase() {
    State().modules.Remove(this);
    FreeLanguageFile();
}

void ModuleBase::OnInit() {}

void ModuleBase::OnFree() {}

bool ModuleBase::GetLanguageDLLName(unsigned short, String&) {
    return false;
}

void ModuleBase::Init(HINSTANCE instance) {
    FreeLanguageFile();
    m_hInstance = instance;
    m_hResource = instance;
    State().modules.Add(this);
    LoadLanguageFile();
    OnInit();
}

void ModuleBase::Free() {
    OnFree();
    State().modules.Remove(this);
}

String ModuleBase::GetPath() const {
    char buffer[1024];
    const DWORD length = GetModuleFileNameA(m_hInstance, buffer, sizeof buffer);
    // A path that is cut off fills the buffer, on some systems without a NUL at its end.
    return NarrowString(buffer, std::min<std::size_t>(length, sizeof buffer - 1));
}

String ModuleBase::GetDirectory() const {
    return File::GetDirname(GetPath());
}

String ModuleBase::GetFilename() const {
    return File::GetBasename(GetPath(), {});
}

String ModuleBase::GetName() const {
    return File::GetFileTitleA(GetPath());
}

ModuleBase::Procedure ModuleBase::GetProcedure(const NarrowString& name) const {
    // A function pointer may be cast to any other and back; the way over `void ()` tells the compiler that it is meant.
    return reinterpret_cast<Procedure>(reinterpret_cast<void (*)()>(GetProcAddress(m_hInstance, name.c_str())));
}

ModuleBase* ModuleBase::GetModule(const String& path) {
    const auto& modules = GetModules();
    const auto found = std::find_if(modules.begin(), modules.end(),
                                    [&](const ModuleBase* module) { return module->GetPath().compare(path) == 0; });
    return found == modules.end() ? nullptr : *found;
}

const std::list<ModuleBase*>& ModuleBase::GetModules() {
    return State().modules.All();
}
