#include <kelcore/stream/core.h>

#include "stream/Failures.h"

#include <algorithm>

namespace {

constexpr std::size_t kPiece = 64 * 1024;

// Appends @p count bytes of @p source to @p text, whose units are bytes or 16-bit units. The text grows piece by piece,
// so that a length made up by damage costs no more memory than bytes that really arrive. A length of
// 0 is a call too.
template <class Text>
void ReadPieces(InputStream& source, Text& text, std::size_t count) {
    constexpr std::size_t unit = sizeof(typename Text::value_type);
    std::size_t done = 0;
    do {
        const std::size_t piece = std::min(count - done, kPiece);
        text.resize((done + piece + unit - 1) / unit);
        source.Read(reinterpret_cast<char*>(text.data()) + done, static_cast<int>(piece));
        done += piece;
    } while (done < count);
}

} // namespace

StreamBase::Exception::Exception(__int32 failure, const WideString& text) : code(failure), message(text) {}

StreamBase::Exception::Exception(const Exception& other) = default;
StreamBase::Exception& StreamBase::Exception::operator=(const Exception& other) = default;
StreamBase::Exception::~Exception() = default;

void kel::ThrowFailure(FailureCode code, const char* message) {
    throw StreamBase::Exception(code, WideString(message, message + std::strlen(message)));
}

void OutputStream::Flush() {}

InputStream& InputStream::operator>>(WideString& text) {
    std::uint32_t count = 0;
    Get(count);
    WideString units;
    ReadPieces(*this, units, count);
    units.resize(std::min<std::size_t>(count / 2, units.find(static_cast<unsigned short>(0))));
    text.swap(units);
    return *this;
}

InputStream& InputStream::ReadLongText(NarrowString& text, std::uint32_t count) {
    NarrowString bytes;
    ReadPieces(*this, bytes, count);
    text.swap(bytes);
    return *this;
}
