#pragma once

/// @file
/// The texts of the conversion benchmarks and the interface of those who convert them.

#include "bench/support/Jobs.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kel::bench {

using Wide = std::u16string;
using WideTexts = std::vector<std::u16string>;
using NarrowTexts = std::vector<std::string>;

/// One who converts between UTF-16 and UTF-8. Of several texts each becomes a string of its own; a single large one may
/// be converted in memory that is kept.
struct Utf8Converter {
    const char* who;
    Call (*toUtf8)(const WideTexts& texts);
    Call (*fromUtf8)(const NarrowTexts& texts);
};

/// One who converts between UTF-16 and a code page, in memory that is kept. Opening the page is not timed.
struct PageConverter {
    const char* who;
    Call (*toPage)(unsigned page, const Wide& text);
    Call (*fromPage)(unsigned page, const std::string& text);
};

/// The bytes behind a text, which all results are compared in.
template <class Text>
std::string BytesOf(const Text& text) {
    return std::string(reinterpret_cast<const char*>(text.data()),
                       static_cast<std::size_t>(text.size()) * sizeof(*text.data()));
}

/// The job of those who convert into memory that they keep: @p convert returns a view of it. Of several texts each is
/// made a string.
template <class Source, class Convert>
Call ConvertAll(std::vector<Source> texts, Convert convert) {
    using View = decltype(convert(texts.front()));
    using Text = std::basic_string<typename View::value_type>;
    if (texts.size() == 1)
        return ForEach(std::move(texts), convert, BytesOf<View>);
    return ForEach(
        std::move(texts), [convert](const Source& source) { return Text(convert(source)); }, BytesOf<Text>);
}

/// @return memory for a conversion of the longest of @p texts, at @p most units of the result for one of the source.
template <class Unit, class Source>
std::shared_ptr<std::vector<Unit>> MemoryFor(const std::vector<Source>& texts, std::size_t most) {
    std::size_t longest = 0;
    for (const Source& text : texts)
        longest = std::max(longest, text.size());
    return std::make_shared<std::vector<Unit>>(longest * most + 16);
}

} // namespace kel::bench
