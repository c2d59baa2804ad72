#include "platform/modules/LocaleLanguages.h"

#include <doctest/doctest.h>

TEST_CASE("a locale stands for the language of its messages") {
    const auto stands = [](const char* locale, LANGID language) {
        CHECK_MESSAGE(kel::platform::LanguageOfLocale(locale) == language, locale);
    };
    for (const char* english : {"", "C.UTF-8", "POSIX", "xx_YY", "en"})
        stands(english, 0x0409);
    stands("en_GB", 0x0809);
    stands("de_AT@euro", 0x0C07);
    stands("de_XX.ISO-8859-1", 0x0407);
    stands("zh_TW", 0x0404);
    stands("sr_RS.UTF-8@latin", 0x241A);
    stands("sr_RS", 0x281A);
    stands("uz_UZ@cyrillic", 0x0843);
    stands("ca_ES@valencia", 0x0403);
}
