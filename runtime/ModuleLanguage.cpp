#include <kelcore/runtime/modules.h>

#include "runtime/ModuleState.h"
#include "runtime/ModuleVersion.h"

#include <memory>
#include <type_traits>

namespace {

using kel::ModuleVersion;

kel::ModuleState::State& State() noexcept {
    return kel::ModuleState::Get();
}

struct FreeModule {
    void operator()(HINSTANCE module) const { FreeLibrary(module); }
};
using LoadedModule = std::unique_ptr<std::remove_pointer_t<HINSTANCE>, FreeModule>;

// The path of a module's language file in place of that of its own; false when nobody names one.
bool FindLanguageFile(ModuleBase& module, String& path) {
    const unsigned short language = State().language;
    ILanguageDLLName* const provider = State().provider;
    return (provider != nullptr && provider->GetLanguageDLLName(language, path)) ||
           module.GetLanguageDLLName(language, path);
}

ModuleVersion VersionOf(HINSTANCE module) {
    ModuleVersion version;
    ModuleBase::GetModuleVersion(module, version.ms, version.ls);
    return version;
}

void WarnOfVersion(const String& path, const ModuleVersion& file, const ModuleVersion& module) {
    String warning;
    warning.Format(u"The version of the language file '%s' (%i.%i.%i.%i) is not the same as the application version "
                   u"(%i.%i.%i.%i).\nThe application will use the default language."_w,
                   static_cast<const unsigned short*>(path), file.Major(), file.Minor(), file.Build(), file.Revision(),
                   module.Major(), module.Minor(), module.Build(), module.Revision());
    ModuleBase::MessageBoxA(/*owner*/ nullptr, StdW2A(warning).c_str(), "Warning", MB_ICONEXCLAMATION | MB_OK);
}

} // namespace

void ModuleBase::FreeLanguageFile() {
    if (m_hResource != m_hInstance)
        FreeLibrary(m_hResource);
    m_hResource = m_hInstance;
}

// Expects that none is loaded, so that whoever is called meanwhile finds the module's own resources.
void ModuleBase::LoadLanguageFile() {
    String path = GetPath();
    if (!FindLanguageFile(*this, path))
        return;
    LoadedModule file(LoadLibraryA(StdW2A(path).c_str()));
    if (file == nullptr)
        return;
    const ModuleVersion own = VersionOf(m_hInstance);
    const ModuleVersion found = VersionOf(file.get());
    if (found != own)
        return WarnOfVersion(path, found, own);
    FreeLanguageFile();            // who was asked may have changed the language meanwhile
    if (file.get() != m_hInstance) // nobody would free another use of the module itself
        m_hResource = file.release();
}

void ModuleBase::SetLanguage(unsigned short language, ILanguageDLLName* provider) {
    State().language = language;
    State().provider = provider;
    State().modules.ForEach([](ModuleBase& module) {
        module.FreeLanguageFile();
        module.LoadLanguageFile();
    });
    State().targets.ForEach([](ResourceTarget& target) { target.ReloadResources(); });
}

unsigned short ModuleBase::GetLanguage() {
    return State().language;
}

int ModuleBase::MessageBoxA(HWND owner, const char* text, const char* caption, unsigned int type) {
    MSGBOXPARAMSA box = {};
    box.cbSize = sizeof box;
    box.hwndOwner = owner;
    box.lpszText = text;
    box.lpszCaption = caption;
    box.dwStyle = type;
    box.dwLanguageId = GetLanguage();
    return MessageBoxIndirectA(&box);
}
