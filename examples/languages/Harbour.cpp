#include "Harbour.h"

#include "InstanceOf.h"
#include "LanguageFiles.h"
#include "Tides.h"
#include "texts.h"

#include <ostream>
#include <utility>

namespace {

constexpr char kAnchor = 0;

// Narrow text of the code page would lose what the page lacks.
std::string Utf8(const String& text) {
    std::string bytes(3 * text.size(), '\0');
    const auto* const units = reinterpret_cast<const WCHAR*>(text.data());
    bytes.resize(static_cast<std::size_t>(WideCharToMultiByte(
        CP_UTF8, /*flags*/ 0, units, static_cast<int>(text.size()), bytes.data(), static_cast<int>(bytes.size()),
        /*default*/ nullptr, /*used*/ nullptr)));
    return bytes;
}

String Text(HarbourModule& module, unsigned id) {
    String text;
    text.LoadStringA(id, /*first*/ 0, /*last*/ -1, &module);
    return text;
}

String Welcome(HarbourModule& module) {
    String text;
    text.Format(&module, IDS_WELCOME, static_cast<const unsigned short*>(u"Ada"_w));
    return text;
}

String Ships(HarbourModule& module) {
    String text;
    text.Format(&module, IDS_SHIPS, 3);
    return text;
}

} // namespace

HarbourModule::HarbourModule() {
    Init(InstanceOf(&kAnchor));
}

HarbourModule::~HarbourModule() {
    Free();
}

Board::Board(std::ostream& out, std::function<String()> text) : m_out(out), m_text(std::move(text)) {
    ReloadResources();
}

void Board::ReloadResources() {
    m_out << "  " << Utf8(m_text()) << '\n';
}

void ShowHarbour(std::ostream& out, const std::vector<std::string>& languages) {
    // It is asked about every module that comes, as long as the process lasts.
    static LanguageFiles files;
    ModuleBase::SetLanguage(LanguageFiles::Identifier("en"), &files);
    HarbourModule module;
    const Board language(out, [&] { return Text(module, IDS_LANGUAGE); });
    const Board welcome(out, [&] { return Welcome(module); });
    const Board ships(out, [&] { return Ships(module); });
    const Board tide(out, [] { return TideOn(1); });
    for (const std::string& name : languages) {
        out << name << ":\n";
        ModuleBase::SetLanguage(LanguageFiles::Identifier(name), &files);
    }
}
