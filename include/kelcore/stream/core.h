#pragma once

/// @file
/// The two abstract byte streams, the operators that turn values into bytes and back, and the exception of all streams.

#include <kelcore/export.h>
#include <kelcore/platform.h>
#include <kelcore/widestring.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <stdexcept>

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "stored values are little-endian and copied as they lie");
static_assert(sizeof(float) == 4 && sizeof(double) == 8 && std::numeric_limits<double>::is_iec559,
              "stored floating-point values are IEEE 754");

namespace kel {

/// Copies sizeof(Word) to 2 * sizeof(Word) bytes as two moves, which may overlap.
template <class Word>
inline void CopyEnds(char* to, const char* from, std::size_t count) {
    Word first;
    Word last;
    std::memcpy(&first, from, sizeof first);
    std::memcpy(&last, from + count - sizeof last, sizeof last);
    std::memcpy(to, &first, sizeof first);
    std::memcpy(to + count - sizeof last, &last, sizeof last);
}

/// memcpy without the call for the short runs that typed values are made of.
inline void CopyBytes(char* to, const char* from, std::size_t count) {
    if (__builtin_constant_p(count) || count > 16 || count < 2)
        std::memcpy(to, from, count);
    else if (count >= 8)
        CopyEnds<std::uint64_t>(to, from, count);
    else if (count >= 4)
        CopyEnds<std::uint32_t>(to, from, count);
    else
        CopyEnds<std::uint16_t>(to, from, count);
}

struct StreamLayout; // the library checks its layouts at compile time

} // namespace kel

/// Common base of all streams and the scope of their exception.
class KELCORE_API StreamBase {
public:
    /// What a stream throws, by value. It derives from no other exception class.
    ///
    /// | code | meaning                                              |
    /// |------|------------------------------------------------------|
    /// | 0    | the imaging toolkit failed                           |
    /// | 1    | an operating-system call failed                      |
    /// | 2    | the object stream is malformed                       |
    /// | 3    | a checksummed block is damaged                       |
    /// | 4    | the source holds fewer bytes than were asked for     |
    /// | 5    | a stored object is newer than its class can read     |
    struct KELCORE_API Exception {
        Exception(__int32 failure, const WideString& text);
        Exception(const Exception& other);
        Exception& operator=(const Exception& other);
        ~Exception();

        __int32 code;
        WideString message; ///< in English; the system's own text, line break included, for code 1
    };
};

/// A sink of bytes.
///
/// The operators write a value as its bytes, little-endian, without tag, alignment or separator; floating-point values
/// are IEEE 754. `long` is stored in 4 bytes on every host, so a `std::int64_t` that is a `long` must be passed as
/// `__int64`. A text is its payload's length in bytes (4 bytes, unsigned), then the payload, written by a call of its
/// own even when it is empty. Pointers other than `char const*` are refused at compile time.
///
/// A derived stream accepts a count of 0 and leaves the caller's bytes unchanged. Streams are destroyed as their own
/// type.
class KELCORE_API OutputStream : public StreamBase {
public:
    KELCORE_INLINE OutputStream() {}
    KELCORE_INLINE OutputStream(const OutputStream&) : StreamBase() {}
    KELCORE_INLINE OutputStream& operator=(const OutputStream&) { return *this; }

    /// Delivers the @p count bytes at @p data to the sink.
    virtual void Write(const char* data, int count) = 0;
    /// Pushes bytes that this stream holds back towards the sink. The base has none.
    virtual void Flush();

    /// Writes 1 byte: 0 for false, 1 for true.
    KELCORE_INLINE OutputStream& operator<<(bool value) { return Put<unsigned char>(value ? 1 : 0); }
    KELCORE_INLINE OutputStream& operator<<(char value) { return Put(value); }
    KELCORE_INLINE OutputStream& operator<<(unsigned char value) { return Put(value); }
    KELCORE_INLINE OutputStream& operator<<(short value) { return Put<std::int16_t>(value); }
    KELCORE_INLINE OutputStream& operator<<(unsigned short value) { return Put<std::uint16_t>(value); }
    KELCORE_INLINE OutputStream& operator<<(int value) { return Put<std::int32_t>(value); }
    /// Writes 4 bytes, the low 32 bits where `long` is wider.
    KELCORE_INLINE OutputStream& operator<<(long value) { return Put(static_cast<std::int32_t>(value)); }
    KELCORE_INLINE OutputStream& operator<<(unsigned int value) { return Put<std::uint32_t>(value); }
    /// Writes 4 bytes, the low 32 bits where `unsigned long` is wider.
    KELCORE_INLINE OutputStream& operator<<(unsigned long value) { return Put(static_cast<std::uint32_t>(value)); }
    KELCORE_INLINE OutputStream& operator<<(float value) { return Put(value); }
    KELCORE_INLINE OutputStream& operator<<(double value) { return Put(value); }
    KELCORE_INLINE OutputStream& operator<<(const __int64& value) { return Put<std::int64_t>(value); }
    /// Writes the text up to its terminating zero. @throws std::length_error beyond 2 GiB, before any byte is written.
    KELCORE_INLINE OutputStream& operator<<(const char* text) { return PutText(text, std::strlen(text)); }
    /// Writes all bytes, zero bytes included. @throws std::length_error beyond 2 GiB, before any byte is written.
    KELCORE_INLINE OutputStream& operator<<(const NarrowString& text) { return PutText(text.data(), text.size()); }
    /// Writes all units; the length field counts bytes. @throws std::length_error beyond 2 GiB of bytes, before any
    /// byte is written.
    KELCORE_INLINE OutputStream& operator<<(const WideString& text) {
        return PutText(reinterpret_cast<const char*>(text.data()), sizeof(unsigned short) * text.size());
    }
    /// Any other pointer would silently be written as a bool.
    template <class Pointed>
    OutputStream& operator<<(const Pointed*) = delete;

protected:
    ~OutputStream() = default;

private:
    template <class Stored>
    OutputStream& Put(Stored value) {
        Write(reinterpret_cast<const char*>(&value), static_cast<int>(sizeof value));
        return *this;
    }

    OutputStream& PutText(const char* data, std::size_t count) {
        if (count > static_cast<std::size_t>(std::numeric_limits<int>::max()))
            throw std::length_error("text too long for a stream");
        Put(static_cast<std::uint32_t>(count));
        Write(data, static_cast<int>(count));
        return *this;
    }
};

/// A source of bytes, which delivers exactly what is asked for or throws.
///
/// The operators take back what those of OutputStream wrote, in the same order and with the same types. They read into
/// the operand itself: after an exception it holds what the source had delivered. A bool and a text are assigned only
/// when all their bytes have arrived.
class KELCORE_API InputStream : public StreamBase {
public:
    KELCORE_INLINE InputStream() {}
    KELCORE_INLINE InputStream(const InputStream&) : StreamBase() {}
    KELCORE_INLINE InputStream& operator=(const InputStream&) { return *this; }

    /// Fills exactly @p count bytes at @p data.
    /// @throws Exception if the source cannot, code 4 when it ends before.
    virtual void Read(char* data, int count) = 0;

    /// Reads 1 byte; any but 0 is true.
    KELCORE_INLINE InputStream& operator>>(bool& value) {
        unsigned char stored = 0;
        Get(stored);
        value = stored != 0;
        return *this;
    }
    KELCORE_INLINE InputStream& operator>>(char& value) { return Get(value); }
    KELCORE_INLINE InputStream& operator>>(unsigned char& value) { return Get(value); }
    KELCORE_INLINE InputStream& operator>>(short& value) { return Get(value); }
    KELCORE_INLINE InputStream& operator>>(unsigned short& value) { return Get(value); }
    KELCORE_INLINE InputStream& operator>>(int& value) { return Get(value); }
    /// Reads 4 bytes and extends the sign where `long` is wider.
    KELCORE_INLINE InputStream& operator>>(long& value) { return GetAs<std::int32_t>(value); }
    KELCORE_INLINE InputStream& operator>>(unsigned int& value) { return Get(value); }
    /// Reads 4 bytes.
    KELCORE_INLINE InputStream& operator>>(unsigned long& value) { return GetAs<std::uint32_t>(value); }
    KELCORE_INLINE InputStream& operator>>(float& value) { return Get(value); }
    KELCORE_INLINE InputStream& operator>>(double& value) { return Get(value); }
    KELCORE_INLINE InputStream& operator>>(__int64& value) { return Get(value); }
    /// Reads a length and that many bytes, which replace @p text. Two calls of Read; a payload beyond 64 KiB is read in
    /// pieces of that size, so that memory grows only with bytes that arrived.
    KELCORE_INLINE InputStream& operator>>(NarrowString& text) {
        std::uint32_t count = 0;
        Get(count);
        if (count > kShortText)
            return ReadLongText(text, count);
        char bytes[kShortText];
        Read(bytes, static_cast<int>(count));
        if (text.size() != count)
            text.resize(count);
        kel::CopyBytes(text.data(), bytes, count);
        return *this;
    }
    /// Reads a length in bytes and that many bytes, in pieces as above. @p text becomes their units up to the first
    /// zero unit; an odd last byte is dropped.
    InputStream& operator>>(WideString& text);

protected:
    ~InputStream() = default;

private:
    static constexpr std::uint32_t kShortText = 128;

    template <class Stored>
    InputStream& Get(Stored& value) {
        Read(reinterpret_cast<char*>(&value), static_cast<int>(sizeof value));
        return *this;
    }

    template <class Stored, class Value>
    InputStream& GetAs(Value& value) {
        Stored stored = 0;
        Get(stored);
        value = static_cast<Value>(stored);
        return *this;
    }

    InputStream& ReadLongText(NarrowString& text, std::uint32_t count);
};
