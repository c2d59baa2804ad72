#include "platform/modules/LocaleLanguages.h"

#include <doctest/doctest.h>

TEST_CASE("a locale stands for the language of its messages") {
    struct Row {
        const char* locale;
        LANGID language;
    };
    const Row rows[] = {
        {"C", 0x0409},
        {"POSIX", 0x0409},
        {"C.UTF-8", 0x0409},
        {"", 0x0409},
        {"xx_YY", 0x0409},
        {"en_US.UTF-8", 0x0409},
        {"en_GB", 0x0809},
        {"en", 0x0409},
        {"de_DE", 0x0407},
        {"de_AT@euro", 0x0C07},
        {"de_XX.ISO-8859-1", 0x0407},
        {"de", 0x0407},
        {"fr_CA", 0x0C0C},
        {"ja_JP.eucJP", 0x0411},
        {"zh_TW", 0x0404},
        {"zh_CN.GB18030", 0x0804},
        {"pt_PT", 0x0816},
        {"pt_BR", 0x0416},
        {"sr_RS.UTF-8@latin", 0x241A},
        {"sr_RS", 0x281A},
        {"nb_NO", 0x0414},
        {"es_MX", 0x080A},
        {"uz_UZ@cyrillic", 0x0843},
        {"ca_ES@valencia", 0x0403},
    };
    for (const Row& row : rows) {
        CAPTURE(row.locale);
        CHECK(kel::platform::LanguageOfLocale(row.locale) == row.language);
    }
}
