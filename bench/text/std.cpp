#include "bench/text/Texts.h"

#include <codecvt>
#include <locale>

namespace {

using namespace kel::bench;

// Out of favour with the standard since C++17, with nothing in its place.
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
using Converter = std::wstring_convert<std::codecvt_utf8_utf16<char16_t>, char16_t>;

Call ToUtf8(const WideTexts& texts) {
    return ForEach(
        texts, [converter = std::make_shared<Converter>()](const Wide& text) { return converter->to_bytes(text); },
        BytesOf<std::string>);
}

Call FromUtf8(const NarrowTexts& texts) {
    return ForEach(
        texts,
        [converter = std::make_shared<Converter>()](const std::string& text) { return converter->from_bytes(text); },
        BytesOf<Wide>);
}

const Enter<Utf8Converter> entered{{"std", &ToUtf8, &FromUtf8}};

} // namespace
