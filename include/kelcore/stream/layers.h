#pragma once

/// @file
/// Layers that change the bytes on their way: checksummed blocks and scrambling. A layer holds its inner stream by
/// reference and never owns it.

#include <kelcore/stream/core.h>

/// Cuts what passes through into blocks of at most 4,088 bytes, each behind its length and before its CRC-32 (the one
/// of IEEE 802.3, zlib and PNG). docs/formats/crc-blocks.md has the bytes.
///
/// It is also the write buffer of a stack: a full block reaches the inner stream as three writes. Call Flush before the
/// stream goes away: the destructor writes the last block too, but has to swallow a failure to do so.
class KELCORE_API CRCOutputStream : public OutputStream {
public:
    explicit CRCOutputStream(OutputStream& inner);
    CRCOutputStream(const CRCOutputStream&) = delete;
    CRCOutputStream& operator=(const CRCOutputStream&) = delete;
    /// Emits the pending block and swallows a failure. Does not flush the inner stream.
    ~CRCOutputStream();

    /// Collects the bytes and emits a block the moment it is full. A count below 1 does nothing.
    /// @throws what the inner stream throws; the bytes of the block that failed stay pending and are emitted by the
    /// next write or flush, the bytes of this call behind them are lost.
    void Write(const char* data, int count) override;
    /// Emits the pending block, if any, and flushes the inner stream.
    /// @throws what the inner stream throws; a block that failed stays pending.
    void Flush() override;

private:
    friend struct kel::StreamLayout;

    static constexpr int kBlockSize = 4088;

    void EmitPending();
    void EmitBlock(const char* payload, int count);
    const char* EmitWholeBlocks(const char* data, int& count);

    OutputStream& m_inner;
    char m_buffer[kBlockSize];
    __int32 m_count;
};

/// Reads the blocks of CRCOutputStream back and checks each as it arrives. Blocks of any length from 1 to 4,088 bytes
/// are taken at any place.
class KELCORE_API CRCInputStream : public InputStream {
public:
    explicit CRCInputStream(InputStream& inner);
    CRCInputStream(const CRCInputStream&) = delete;
    CRCInputStream& operator=(const CRCInputStream&) = delete;

    /// Delivers bytes of the current block and fetches blocks while more are needed; a count below 1 does nothing.
    /// @throws Exception code 3, "Illegal CRC block size" or "CRC checksum error"; what the inner stream throws. Bytes
    /// of sound blocks are then at @p data, and the stream is not to be read further.
    void Read(char* data, int count) override;

private:
    friend struct kel::StreamLayout;

    static constexpr int kBlockSize = 4088;

    void FetchBlock();

    InputStream& m_inner;
    char m_buffer[kBlockSize]; // a block lies at the end
    __int32 m_position;        // of the next unread byte
};

/// Stores every byte as its bitwise complement, so that it cannot be read at a glance. There is no key: this hides, it
/// does not protect. Copies write to the same inner stream. Flush does not reach the inner stream.
class KELCORE_API CryptingOutputStream : public OutputStream {
public:
    explicit CryptingOutputStream(OutputStream& inner);
    CryptingOutputStream(const CryptingOutputStream& other);
    CryptingOutputStream& operator=(const CryptingOutputStream& other);

    /// Passes the complements on in one write of the inner stream, or none when @p count is below 1. The caller's bytes
    /// are never touched.
    /// @throws what the inner stream throws; std::bad_alloc for a write beyond 4 KiB.
    void Write(const char* data, int count) override;

private:
    friend struct kel::StreamLayout;

    OutputStream* m_inner;
};

/// Reads back what CryptingOutputStream stored. Copies read from the same inner stream.
class KELCORE_API CryptingInputStream : public InputStream {
public:
    explicit CryptingInputStream(InputStream& inner);
    CryptingInputStream(const CryptingInputStream& other);
    CryptingInputStream& operator=(const CryptingInputStream& other);

    /// Fills @p data with one read of the inner stream, or none when @p count is below 1, and complements it.
    /// @throws what the inner stream throws; @p data then holds what that stream left there.
    void Read(char* data, int count) override;

private:
    friend struct kel::StreamLayout;

    InputStream* m_inner;
};
