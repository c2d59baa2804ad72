#include <kelcore/stream/layers.h>

#include <memory>

namespace {

constexpr int kOnStack = 4096;

void Complement(const char* from, char* to, int count) {
    for (int i = 0; i < count; ++i)
        to[i] = static_cast<char>(~from[i]);
}

} // namespace

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

void CryptingInputStream::Read(char* data, int count) {
    if (count <= 0)
        return;
    m_inner->Read(data, count);
    Complement(data, data, count);
}
