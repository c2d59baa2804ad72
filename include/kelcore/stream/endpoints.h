#pragma once

/// @file
/// The end points of a stream stack: memory and files. None of them buffers.

#include <kelcore/stream/core.h>

/// A sink that grows in memory.
class KELCORE_API MemoryOutputStream : public OutputStream {
public:
    KELCORE_INLINE MemoryOutputStream() {}
    MemoryOutputStream(const MemoryOutputStream& other);
    MemoryOutputStream& operator=(const MemoryOutputStream& other);
    ~MemoryOutputStream();

    /// Appends the bytes; a count below 1 does nothing.
    /// @throws std::length_error, std::bad_alloc; the content is then unchanged.
    KELCORE_INLINE void Write(const char* data, int count) override {
        if (count > 0)
            m_content.append(data, static_cast<std::size_t>(count));
    }

    /// @return a copy of all bytes written so far.
    NarrowString GetContent() const;

private:
    friend struct kel::StreamLayout;

    NarrowString m_content;
};

/// A cursor over a block of memory, which must stay valid and unchanged while it is read. A copy reads on from the same
/// place, independently.
class KELCORE_API MemoryInputStream : public InputStream {
public:
    /// Reads the @p size bytes at @p data. A size below 0 makes every read throw.
    KELCORE_INLINE MemoryInputStream(const char* data, int size) : m_cursor(data), m_remaining(size) {}
    /// Reads the bytes of @p block, which is not copied. @throws std::length_error beyond 2 GiB.
    explicit MemoryInputStream(const NarrowString& block);
    MemoryInputStream(const MemoryInputStream& other);
    MemoryInputStream& operator=(const MemoryInputStream& other);

    /// Copies the next @p count bytes to @p data; a count below 0 does nothing.
    /// @throws Exception code 4, "Memory block too short", if fewer are left; @p data is then untouched and the cursor
    /// stays.
    KELCORE_INLINE void Read(char* data, int count) override {
        if (count > m_remaining)
            ThrowTooShort();
        if (count <= 0)
            return;
        kel::CopyBytes(data, m_cursor, static_cast<std::size_t>(count));
        m_cursor += count;
        m_remaining -= count;
    }

private:
    friend struct kel::StreamLayout;

    [[noreturn]] static void ThrowTooShort();

    const char* m_cursor;
    __int32 m_remaining;
};

/// A sink over a new file, opened for this stream alone. Every write is one call of the system.
///
/// Copies share the file; the last of them closes it. Closing leaves the thread's last error as it was.
class KELCORE_API FileOutputStream : public OutputStream {
public:
    /// Creates the file, or empties an existing one (`CreateFileA`, exclusive writing, CREATE_ALWAYS).
    /// @throws Exception code 1 with the system's text.
    explicit FileOutputStream(const WideString& path);
    FileOutputStream(const FileOutputStream& other);
    FileOutputStream& operator=(const FileOutputStream& other);
    ~FileOutputStream();

    /// Writes the bytes with one `WriteFile`; a count below 1 does nothing.
    /// @throws Exception code 1 with the system's text; the stream stays usable.
    void Write(const char* data, int count) override;
    /// Has the system put the file's bytes on the disk (`FlushFileBuffers`).
    /// @throws Exception code 1 with the system's text; the stream stays usable.
    void Flush() override;

private:
    friend struct kel::StreamLayout;

    HANDLE m_handle;
};

/// A source over an existing file, opened for this stream alone. Every read is one call of the system.
///
/// Copies share the file and its position; the last of them closes it. Closing leaves the thread's last error as it
/// was.
class KELCORE_API FileInputStream : public InputStream {
public:
    /// Opens the file (`CreateFileA`, exclusive reading, OPEN_EXISTING).
    /// @throws Exception code 1 with the system's text.
    explicit FileInputStream(const WideString& path);
    FileInputStream(const FileInputStream& other);
    FileInputStream& operator=(const FileInputStream& other);
    ~FileInputStream();

    /// Reads the bytes with one `ReadFile`; a count below 1 does nothing.
    /// @throws Exception code 1 with the system's text; code 4, "Read beyond end of file", when fewer bytes came, which
    /// are then at @p data and behind the file's position.
    void Read(char* data, int count) override;

private:
    friend struct kel::StreamLayout;

    HANDLE m_handle;
};
