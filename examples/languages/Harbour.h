#pragma once

#include <kelcore/runtime/modules.h>

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

/// The program as a module.
class HarbourModule : public ModuleBase {
public:
    HarbourModule();
    ~HarbourModule() override;
};

/// A board at the quay. It shows its text when it is put up, and again whenever the language changes.
class Board : public ResourceTarget {
public:
    /// @param out is written to as long as the board lives.
    /// @param text makes the text in the current language.
    Board(std::ostream& out, std::function<String()> text);
    void ReloadResources() override;

private:
    std::ostream& m_out;
    std::function<String()> m_text;
};

/// Puts up the boards of the harbour in English and changes them to each of @p languages (LanguageFiles::Identifier).
/// Writes what they show as UTF-8.
void ShowHarbour(std::ostream& out, const std::vector<std::string>& languages);
