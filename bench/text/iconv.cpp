#include "bench/text/Texts.h"

#include <iconv.h>
#include <stdexcept>

namespace {

using namespace kel::bench;

// An open conversion, shared by the copies of a job.
std::shared_ptr<void> Open(const std::string& to, const std::string& from) {
    const iconv_t handle = iconv_open(to.c_str(), from.c_str());
    if (handle == reinterpret_cast<iconv_t>(-1))
        throw std::runtime_error("iconv does not know the page");
    return {handle, &iconv_close};
}

template <class To, class From>
Call Convert(const std::string& to, const std::string& from, const std::vector<From>& texts, std::size_t most) {
    const auto memory = MemoryFor<To>(texts, most);
    return ConvertAll(texts, [memory, handle = Open(to, from)](const From& text) {
        char* source = const_cast<char*>(reinterpret_cast<const char*>(text.data()));
        std::size_t left = text.size() * sizeof text[0];
        char* target = reinterpret_cast<char*>(memory->data());
        std::size_t room = memory->size() * sizeof(To);
        iconv(handle.get(), &source, &left, &target, &room);
        return std::basic_string_view<To>(memory->data(), memory->size() - room / sizeof(To));
    });
}

std::string Name(unsigned page) {
    return "CP" + std::to_string(page);
}

Call ToUtf8(const WideTexts& texts) {
    return Convert<char>("UTF-8", "UTF-16LE", texts, 3);
}
Call FromUtf8(const NarrowTexts& texts) {
    return Convert<char16_t>("UTF-16LE", "UTF-8", texts, 1);
}
Call ToPage(unsigned page, const Wide& text) {
    return Convert<char>(Name(page), "UTF-16LE", WideTexts{text}, 2);
}
Call FromPage(unsigned page, const std::string& text) {
    return Convert<char16_t>("UTF-16LE", Name(page), NarrowTexts{text}, 1);
}

const Enter<Utf8Converter> utf8{{"iconv", &ToUtf8, &FromUtf8}};
const Enter<PageConverter> page{{"iconv", &ToPage, &FromPage}};

} // namespace
