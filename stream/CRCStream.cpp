#include <kelcore/stream/layers.h>

#include "stream/Crc32.h"
#include "stream/Failures.h"

#include <algorithm>

CRCOutputStream::CRCOutputStream(OutputStream& inner) : m_inner(inner), m_count(0) {}

CRCOutputStream::~CRCOutputStream() {
    try {
        EmitPending();
    } catch (...) {
        // A destructor has nobody to tell; the class comment asks for Flush.
    }
}

void CRCOutputStream::Write(const char* data, int count) {
    while (count > 0) {
        if (m_count == 0 && count >= kBlockSize) {
            data = EmitWholeBlocks(data, count);
            continue;
        }
        const int taken = std::min(count, kBlockSize - m_count);
        kel::CopyBytes(m_buffer + m_count, data, static_cast<std::size_t>(taken));
        m_count += taken;
        data += taken;
        count -= taken;
        if (m_count == kBlockSize)
            EmitPending();
    }
}

void CRCOutputStream::Flush() {
    EmitPending();
    m_inner.Flush();
}

void CRCOutputStream::EmitPending() {
    if (m_count == 0)
        return;
    EmitBlock(m_buffer, m_count);
    m_count = 0;
}

void CRCOutputStream::EmitBlock(const char* payload, int count) {
    m_inner << static_cast<unsigned int>(count);
    m_inner.Write(payload, count);
    m_inner << kel::Crc32(payload, static_cast<std::size_t>(count));
}

// Whole blocks go out from where the caller has them. One that fails becomes the pending block, as if it had been
// collected first.
const char* CRCOutputStream::EmitWholeBlocks(const char* data, int& count) {
    try {
        for (; count >= kBlockSize; count -= kBlockSize, data += kBlockSize)
            EmitBlock(data, kBlockSize);
    } catch (...) {
        std::memcpy(m_buffer, data, kBlockSize);
        m_count = kBlockSize;
        throw;
    }
    return data;
}

CRCInputStream::CRCInputStream(InputStream& inner) : m_inner(inner), m_position(kBlockSize) {}

void CRCInputStream::Read(char* data, int count) {
    while (count > 0) {
        const int taken = std::min(count, kBlockSize - m_position);
        kel::CopyBytes(data, m_buffer + m_position, static_cast<std::size_t>(taken));
        m_position += taken;
        data += taken;
        count -= taken;
        if (count > 0)
            FetchBlock();
    }
}

void CRCInputStream::FetchBlock() {
    unsigned int length = 0;
    m_inner >> length;
    if (length == 0 || length > static_cast<unsigned int>(kBlockSize))
        kel::ThrowFailure(kel::kDamagedBlock, "Illegal CRC block size");
    m_position = kBlockSize - static_cast<int>(length);
    char* const payload = m_buffer + m_position;
    m_inner.Read(payload, static_cast<int>(length));
    unsigned int stored = 0;
    m_inner >> stored;
    if (kel::Crc32(payload, length) != stored)
        kel::ThrowFailure(kel::kDamagedBlock, "CRC checksum error");
}
