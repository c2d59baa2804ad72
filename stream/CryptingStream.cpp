#include <kelcore/stream/layers.h>

#include <memory>

namespace {

constexpr int kOnStack = 4096;

void Complement(const char* from, char* to, int count) {
    for (int i = 0; i < count; ++i)
        to[i] = static_cast<char>(~from[i]);
}

} // namespace

CryptingOutputStream::CryptingOutputStream(OutputStream& inner) : m_inner(&inner) {}
CryptingOutputStream::CryptingOutputStream(const CryptingOutputStream& other) = default;
CryptingOutputStream& CryptingOutputStream::operator=(const CryptingOutputStream& other) = default;

void CryptingOutputStream::Write(const char* data, int count) {
    if (count <= 0)
        return;
    if (count <= kOnStack) {
        char scratch[kOnStack];
        Complement(data, scratch, count);
        m_inner->Write(scratch, count);
        return;
    }
    const std::unique_ptr<char[]> scratch(new char[static_cast<std::size_t>(count)]);
    Complement(data, scratch.get(), count);
    m_inner->Write(scratch.get(), count);
}

CryptingInputStream::CryptingInputStream(InputStream& inner) : m_inner(&inner) {}
CryptingInputStream::CryptingInputStream(const CryptingInputStream& other) = default;
CryptingInputStream& CryptingInputStream::operator=(const CryptingInputStream& other) = default;

void CryptingInputStream::Read(char* data, int count) {
    if (count <= 0)
        return;
    m_inner->Read(data, count);
    Complement(data, data, count);
}
