#include "bench/stream/Values.h"

#include <QByteArray>
#include <QDataStream>
#include <QIODevice>

namespace {

using kel::bench::Values;

void Write(const Values& values, const kel::bench::Taker& take) {
    QByteArray sink;
    QDataStream stream(&sink, QIODevice::WriteOnly);
    stream.setByteOrder(QDataStream::LittleEndian);
    for (std::size_t i = 0; i < kel::bench::kRounds; ++i) {
        const std::string& text = values.texts[i];
        stream << values.ints[i] << values.doubles[i] << values.shorts[i];
        stream.writeBytes(text.data(), static_cast<uint>(text.size()));
    }
    kel::bench::Finish({sink.constData(), static_cast<std::size_t>(sink.size())}, take);
}

void Read(const std::string& block, Values& values) {
    const QByteArray source = QByteArray::fromRawData(block.data(), static_cast<qsizetype>(block.size()));
    QDataStream stream(source);
    stream.setByteOrder(QDataStream::LittleEndian);
    for (std::size_t i = 0; i < kel::bench::kRounds; ++i) {
        qint32 length = 0;
        stream >> values.ints[i] >> values.doubles[i] >> values.shorts[i] >> length;
        values.texts[i].resize(static_cast<std::size_t>(length));
        stream.readRawData(values.texts[i].data(), length);
    }
}

const kel::bench::Enter<kel::bench::ValueStore> entered{{"qt", &Write, &Read}};

} // namespace
