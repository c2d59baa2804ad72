#include "Harbour.h"

#include "tests/support/MessageBoxes.h"

#include <doctest/doctest.h>
#include <kelcore/platform.h>

#include <sstream>

TEST_CASE("two modules speak the language that is chosen, and refuse a language file of another version") {
    const std::string english = "  English\n"
                                "  Welcome to the harbour, Ada.\n"
                                "  3 ships are in.\n"
                                "  Tuesday: high water at 7:30\n";
    const std::string german = "  Deutsch\n"
                               "  Willkommen im Hafen, Ada.\n"
                               "  3 Schiffe sind eingelaufen.\n"
                               "  Dienstag: Hochwasser um 7.30 Uhr\n";
    const std::string japanese = "  日本語\n"
                                 "  Adaさん、港へようこそ。\n"
                                 "  3隻が入港しています。\n"
                                 "  火曜日、満潮7時30分\n";
    const kel::test::MessageBoxes boxes(IDOK);
    std::ostringstream shown;
    ShowHarbour(shown, {"de", "ja", "fr", "en"});
    CHECK(shown.str() == english + "de:\n" + german + "ja:\n" + japanese + "fr:\n" + english + "en:\n" + english);
    REQUIRE(boxes.Seen().size() == 1);
    CHECK(boxes.Seen()[0].text.find(".fr.dll' (1.9.0.0) is not the same as the application version (2.0.0.0)") !=
          std::string::npos);
}
