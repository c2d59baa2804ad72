#include "bench/module/Texts.h"

#include <libintl.h>

#include <clocale>
#include <cstdlib>

namespace {

using namespace kel::bench;

Call Strings() {
    // The language is asked for by LANGUAGE, which counts in every locale but the plain one.
    std::setlocale(LC_MESSAGES, "C.UTF-8");
    setenv("LANGUAGE", "de", /*overwrite*/ 1);
    bindtextdomain("texts", KELCORE_BENCH_MODULES);
    std::vector<std::string> names;
    for (const unsigned number : TextNumbers())
        names.push_back(TextName(number));
    return ForEach(
        names, [](const std::string& name) { return std::string(dgettext("texts", name.c_str())); },
        [](const std::string& text) { return text; });
}

const Enter<Catalogue> entered{{"gettext", &Strings}};

} // namespace
