#include <kelcore/stream/endpoints.h>

#include "stream/Failures.h"

namespace {

int CheckedSize(const NarrowString& block) {
    if (block.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        throw std::length_error("memory block too long for a stream");
    return static_cast<int>(block.size());
}

} // namespace

NarrowString MemoryOutputStream::GetContent() const {
    return m_content;
}

void MemoryOutputStream::Grow(const char* data, std::size_t count) {
    m_content.append(data, count);
}

MemoryInputStream::MemoryInputStream(const NarrowString& block) : MemoryInputStream(block.data(), CheckedSize(block)) {}

void MemoryInputStream::ThrowTooShort() {
    kel::ThrowFailure(kel::kEndOfData, "Memory block too short");
}
