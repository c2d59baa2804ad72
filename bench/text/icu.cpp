#include "bench/text/Texts.h"

#include <unicode/ucnv.h>
#include <unicode/ustring.h>

#include <stdexcept>

namespace {

using namespace kel::bench;

Call ToUtf8(const WideTexts& texts) {
    const auto memory = MemoryFor<char>(texts, 3);
    return ConvertAll(texts, [memory](const Wide& text) {
        UErrorCode status = U_ZERO_ERROR;
        int32_t count = 0;
        u_strToUTF8(memory->data(), static_cast<int32_t>(memory->size()), &count, text.data(),
                    static_cast<int32_t>(text.size()), &status);
        return std::string_view(memory->data(), static_cast<std::size_t>(count));
    });
}

Call FromUtf8(const NarrowTexts& texts) {
    const auto memory = MemoryFor<char16_t>(texts, 1);
    return ConvertAll(texts, [memory](const std::string& text) {
        UErrorCode status = U_ZERO_ERROR;
        int32_t count = 0;
        u_strFromUTF8(memory->data(), static_cast<int32_t>(memory->size()), &count, text.data(),
                      static_cast<int32_t>(text.size()), &status);
        return std::u16string_view(memory->data(), static_cast<std::size_t>(count));
    });
}

std::shared_ptr<UConverter> Open(unsigned page) {
    UErrorCode status = U_ZERO_ERROR;
    UConverter* const converter = ucnv_open(("windows-" + std::to_string(page)).c_str(), &status);
    if (U_FAILURE(status))
        throw std::runtime_error(u_errorName(status));
    return {converter, &ucnv_close};
}

Call ToPage(unsigned page, const Wide& text) {
    const WideTexts texts{text};
    const auto memory = MemoryFor<char>(texts, 2);
    return ConvertAll(texts, [memory, converter = Open(page)](const Wide& source) {
        UErrorCode status = U_ZERO_ERROR;
        const int32_t count = ucnv_fromUChars(converter.get(), memory->data(), static_cast<int32_t>(memory->size()),
                                              source.data(), static_cast<int32_t>(source.size()), &status);
        return std::string_view(memory->data(), static_cast<std::size_t>(count));
    });
}

Call FromPage(unsigned page, const std::string& text) {
    const NarrowTexts texts{text};
    const auto memory = MemoryFor<char16_t>(texts, 1);
    return ConvertAll(texts, [memory, converter = Open(page)](const std::string& source) {
        UErrorCode status = U_ZERO_ERROR;
        const int32_t count = ucnv_toUChars(converter.get(), memory->data(), static_cast<int32_t>(memory->size()),
                                            source.data(), static_cast<int32_t>(source.size()), &status);
        return std::u16string_view(memory->data(), static_cast<std::size_t>(count));
    });
}

const Enter<Utf8Converter> utf8{{"icu", &ToUtf8, &FromUtf8}};
const Enter<PageConverter> page{{"icu", &ToPage, &FromPage}};

} // namespace
