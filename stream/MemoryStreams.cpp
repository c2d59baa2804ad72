#include <kelcore/stream/endpoints.h>

#include "stream/Failures.h"

namespace {

int CheckedSize(const NarrowString& block) {
    if (block.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        throw std::length_error("memory block too long for a stream");
    return static_cast<int>(block.size());
}

} // namespace

MemoryOutputStream::MemoryOutputStream(const MemoryOutputStream& other) = default;
MemoryOutputStream& MemoryOutputStream::operator=(const MemoryOutputStream& other) = default;
MemoryOutputStream::~MemoryOutputStream() = default;

NarrowString MemoryOutputStream::GetContent() const {
    return m_content;
}

MemoryInputStream::MemoryInputStream(const NarrowString& block) : MemoryInputStream(block.data(), CheckedSize(block)) {}

MemoryInputStream::MemoryInputStream(const MemoryInputStream& other) = default;
MemoryInputStream& MemoryInputStream::operator=(const MemoryInputStream& other) = default;

void MemoryInputStream::ThrowTooShort() {
    kel::ThrowFailure(kel::kEndOfData, "Memory block too short");
}
