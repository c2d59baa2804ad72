#pragma once

#include <kelcore/stream.h>

#include <memory>

/// A file of checksummed blocks: its stream stack for writing and for reading.
namespace kelexamples {

/// Writes a file beside its place and puts it there when it is whole. Bytes go through CRC blocks, then, when the file
/// is scrambled, through the scrambling layer, into the file.
class BlockFileOutput {
public:
    /// @param kind what the file is called in messages, such as "archive".
    /// @param firstClass the identifier of the object's class that files of the kind begin with: no other file is
    ///        replaced, as whoever forgets to name the archive names one that is to be packed.
    /// @throws Failure if the file cannot be made, or something else is there.
    BlockFileOutput(const WideString& path, bool scramble, const char* kind, int firstClass);
    /// Removes what was written unless Commit took place.
    ~BlockFileOutput();
    BlockFileOutput(const BlockFileOutput&) = delete;
    BlockFileOutput& operator=(const BlockFileOutput&) = delete;

    OutputStream& Stream() { return *m_blocks; }
    /// Brings all bytes to the disk and puts the file into its place, over an older one.
    /// @throws Failure; nothing is left behind then, an older file stays.
    void Commit();

private:
    void Close();

    WideString m_path;
    WideString m_partPath;
    std::unique_ptr<FileOutputStream> m_file;
    std::unique_ptr<CryptingOutputStream> m_scrambler;
    std::unique_ptr<CRCOutputStream> m_blocks;
};

/// Counts the bytes and blocks that the CRC layer above takes: three reads a block.
class BlockCounter : public InputStream {
public:
    explicit BlockCounter(InputStream& inner) : m_inner(inner) {}

    void Read(char* data, int count) override;

    /// The number, from 1 on, and the file offset of the block taken last.
    unsigned long long Block() const { return m_block; }
    unsigned long long BlockOffset() const { return m_blockOffset; }
    /// All bytes taken so far.
    unsigned long long Offset() const { return m_offset; }

private:
    InputStream& m_inner;
    int m_part = 0;
    unsigned long long m_block = 0;
    unsigned long long m_blockOffset = 0;
    unsigned long long m_offset = 0;
};

/// Reads a file of blocks; tells by its first bytes whether it is scrambled.
class BlockFileInput {
public:
    /// @param kind what the file is called in messages, such as "archive".
    /// @throws Failure if the file cannot be read or is too short for a block.
    BlockFileInput(const WideString& path, const char* kind);

    InputStream& Stream() { return *m_blocks; }
    /// How many bytes of the file have been taken, and how many there are.
    unsigned long long Taken() const { return m_counter->Offset(); }
    unsigned long long Size() const { return m_size; }
    /// @throws Failure if bytes follow the ones read so far.
    void ExpectEnd() const;
    /// The line that tells where reading failed with @p error.
    std::string Describe(const StreamBase::Exception& error) const;

private:
    WideString m_path;
    const char* m_kind;
    unsigned long long m_size;
    std::unique_ptr<FileInputStream> m_file;
    std::unique_ptr<CryptingInputStream> m_scrambler;
    std::unique_ptr<BlockCounter> m_counter;
    std::unique_ptr<CRCInputStream> m_blocks;
};

} // namespace kelexamples
