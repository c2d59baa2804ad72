#include "bench/support/Areas.h"
#include "bench/support/Random.h"
#include "bench/text/Texts.h"

#include <kelcore/platform.h>
#include <kelcore/text.h>

#include <cstring>
#include <iterator>
#include <stdexcept>

namespace kel::bench {
namespace {

constexpr std::size_t kLarge = 1 << 20;

// ---- the texts ----

Wide Ascii(Random& random, std::size_t length) {
    Wide text;
    while (text.size() < length)
        text += random.Below(8) == 0 ? u' ' : static_cast<char16_t>('a' + random.Below(26));
    return text;
}

char16_t OneOf(Random& random, char16_t first, std::uint32_t count) {
    return static_cast<char16_t>(first + random.Below(count));
}

// A word of one script: half of all words are ASCII, a fifth takes two bytes a letter in UTF-8, a quarter three, the
// rest are pairs of surrogates.
void AppendWord(Random& random, Wide& text) {
    const std::uint32_t script = random.Below(20);
    for (std::uint32_t letters = 2 + random.Below(8); letters > 0; --letters) {
        if (script < 10)
            text += OneOf(random, u'a', 26);
        else if (script < 14)
            text += OneOf(random, u'\u0430', 32);
        else if (script < 19)
            text += OneOf(random, u'\u4E00', 0x4000);
        else
            (text += u'\xD83D') += OneOf(random, u'\xDE00', 0x40);
    }
}

Wide Mixed(std::size_t length) {
    Random random(11);
    Wide text;
    while (text.size() + 24 < length) {
        AppendWord(random, text);
        text += u' ';
    }
    return text.append(length - text.size(), u'.');
}

WideTexts ShortTexts() {
    Random random(12);
    WideTexts texts;
    for (int i = 0; i < 1000; ++i)
        texts.push_back(Ascii(random, 24));
    return texts;
}

// A text of western Europe: one letter in eight has an accent.
Wide Western() {
    Random random(13);
    Wide text = Ascii(random, kLarge);
    for (std::size_t i = 0; i < text.size(); i += 1 + random.Below(15))
        text[i] = OneOf(random, u'\u00E0', 23);
    return text;
}

// A Japanese text: kana, common characters, and some ASCII.
Wide Japanese() {
    static constexpr char16_t kCommon[] = u"日本国語学校時間年月火水木金土人大小中上下左右東西南北山川田町村市電車会社";
    Random random(14);
    Wide text;
    while (text.size() < kLarge) {
        const std::uint32_t kind = random.Below(10);
        if (kind < 5)
            text += OneOf(random, u'\u3041', 83);
        else if (kind < 7)
            text += OneOf(random, u'\u30A1', 83);
        else if (kind < 9)
            text += kCommon[random.Below(static_cast<std::uint32_t>(std::size(kCommon)) - 1)];
        else
            text += OneOf(random, u'a', 26);
    }
    return text;
}

// ---- the library and the limit ----

WideString Own(const Wide& text) {
    return WideString(text.begin(), text.end());
}

Call ToUtf8(const WideTexts& texts) {
    std::vector<WideString> own;
    for (const Wide& text : texts)
        own.push_back(Own(text));
    return ForEach(std::move(own), StdW2A, BytesOf<std::string>);
}

Call FromUtf8(const NarrowTexts& texts) {
    return ForEach(texts, StdA2W, BytesOf<WideString>);
}

Call ToPage(unsigned page, const Wide& text) {
    const std::vector<WideString> texts{Own(text)};
    const auto memory = MemoryFor<char>(texts, 2);
    return ConvertAll(texts, [=](const WideString& source) {
        const int count = WideCharToMultiByte(page, 0, source.data(), static_cast<int>(source.size()), memory->data(),
                                              static_cast<int>(memory->size()), nullptr, nullptr);
        return std::string_view(memory->data(), static_cast<std::size_t>(count));
    });
}

Call FromPage(unsigned page, const std::string& text) {
    const NarrowTexts texts{text};
    const auto memory = MemoryFor<unsigned short>(texts, 1);
    return ConvertAll(texts, [=](const std::string& source) {
        const int count = MultiByteToWideChar(page, 0, source.data(), static_cast<int>(source.size()), memory->data(),
                                              static_cast<int>(memory->size()));
        return std::basic_string_view<unsigned short>(memory->data(), static_cast<std::size_t>(count));
    });
}

const Enter<Utf8Converter> utf8{{"kelcore", &ToUtf8, &FromUtf8}};
const Enter<PageConverter> page{{"kelcore", &ToPage, &FromPage}};

// The UTF-16 side of the work, copied: into kept memory when it is one text, else into a string of its own.
Call CopyWide(const WideTexts& texts) {
    const auto memory = MemoryFor<char16_t>(texts, 1);
    Call copy = ConvertAll(texts, [=](const Wide& text) {
        std::memcpy(memory->data(), text.data(), text.size() * sizeof text[0]);
        benchmark::ClobberMemory();
        return std::u16string_view(memory->data(), text.size());
    });
    return {copy.run};
}

// ---- the jobs ----

// What @p call gives for one text, without the line end that closes it.
std::string Single(const Call& call) {
    std::string bytes = call.result();
    bytes.pop_back();
    return bytes;
}

NarrowTexts InUtf8(const WideTexts& texts) {
    NarrowTexts narrow;
    for (const Wide& text : texts)
        narrow.push_back(Single(ToUtf8({text})));
    return narrow;
}

void AddUtf8(const std::string& name, WideTexts (*make)()) {
    for (const Utf8Converter& converter : Contenders<Utf8Converter>()) {
        AddJob("text", converter.who, "UTF-16 to UTF-8, " + name, [=] { return converter.toUtf8(make()); });
        AddJob("text", converter.who, "UTF-8 to UTF-16, " + name, [=] { return converter.fromUtf8(InUtf8(make())); });
    }
    for (const char* direction : {"UTF-16 to UTF-8, ", "UTF-8 to UTF-16, "})
        AddJob("text", "limit-memcpy", direction + name, [=] { return CopyWide(make()); });
}

void AddPage(unsigned number, Wide (*make)()) {
    const std::string name = "cp" + std::to_string(number);
    for (const PageConverter& converter : Contenders<PageConverter>()) {
        AddJob("text", converter.who, "UTF-16 to " + name, [=] { return converter.toPage(number, make()); });
        AddJob("text", converter.who, name + " to UTF-16",
               [=] { return converter.fromPage(number, Single(ToPage(number, make()))); });
    }
    for (const std::string& work : {"UTF-16 to " + name, name + " to UTF-16"})
        AddJob("text", "limit-memcpy", work, [=] { return CopyWide({make()}); });
}

WideTexts LargeAscii() {
    Random random(10);
    return {Ascii(random, kLarge)};
}

WideTexts LargeMixed() {
    return {Mixed(kLarge)};
}

} // namespace

void AddTextJobs() {
    AddUtf8("ASCII 1 Mi", &LargeAscii);
    AddUtf8("mixed 1 Mi", &LargeMixed);
    AddUtf8("1000 x 24 ASCII", &ShortTexts);
    AddPage(1252, &Western);
    AddPage(932, &Japanese);
}

} // namespace kel::bench
