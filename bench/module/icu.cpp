#include "bench/module/Texts.h"

#include <unicode/ures.h>

#include <stdexcept>

namespace {

using namespace kel::bench;

using Bundle = std::shared_ptr<UResourceBundle>;

void Check(UErrorCode status) {
    if (U_FAILURE(status))
        throw std::runtime_error(u_errorName(status));
}

Bundle OpenTexts() {
    UErrorCode status = U_ZERO_ERROR;
    const Bundle bundle(ures_openDirect(KELCORE_BENCH_MODULES "/icu", "de", &status), &ures_close);
    Check(status);
    const Bundle texts(ures_getByKey(bundle.get(), "texts", nullptr, &status), &ures_close);
    Check(status);
    return texts;
}

Call Strings() {
    return ForEach(
        TextNumbers(),
        [texts = OpenTexts()](unsigned number) {
            UErrorCode status = U_ZERO_ERROR;
            int32_t length = 0;
            const char16_t* const units =
                ures_getStringByIndex(texts.get(), static_cast<int32_t>(number), &length, &status);
            return std::u16string(units, static_cast<std::size_t>(length));
        },
        [](const std::u16string& text) { return std::string(text.begin(), text.end()); });
}

const Enter<Catalogue> entered{{"icu", &Strings}};

} // namespace
