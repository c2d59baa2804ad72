// kelharbour: a program and a library whose texts change their language while they run.
//
//     kelharbour             German, Japanese, French, English; the French file is out of date, which a box tells
//     kelharbour LANGUAGE... de, ja, fr, en in any order

#include "Harbour.h"

#include <iostream>

int main(int count, char** arguments) {
    std::vector<std::string> languages(arguments + 1, arguments + count);
    if (languages.empty())
        languages = {"de", "ja", "fr", "en"};
    ShowHarbour(std::cout, languages);
    return std::cout.flush() ? 0 : 1;
}
