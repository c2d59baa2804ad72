#include "bench/text/Lines.h"
#include "bench/text/Texts.h"

#include <QString>

namespace {

using namespace kel::bench;

Call ToUtf8(const WideTexts& texts) {
    std::vector<QString> own;
    for (const Wide& text : texts)
        own.push_back(QString::fromStdU16String(text));
    return ForEach(
        std::move(own), [](const QString& text) { return text.toUtf8(); }, BytesOf<QByteArray>);
}

Call FromUtf8(const NarrowTexts& texts) {
    return ForEach(
        texts,
        [](const std::string& text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); },
        BytesOf<QString>);
}

Call Format() {
    const auto format = [](const auto& line) {
        const auto* const name = reinterpret_cast<const char16_t*>(line.name.utf16());
        return QString::asprintf("%ls %i %lf", reinterpret_cast<const wchar_t*>(name), line.number, line.measure);
    };
    return ForEach(LinesWith(QString::fromStdString), format, [](const QString& text) { return text.toStdString(); });
}

const Enter<Utf8Converter> utf8{{"qt", &ToUtf8, &FromUtf8}};
const Enter<Formatter> formatter{{"qt", &Format}};

} // namespace
