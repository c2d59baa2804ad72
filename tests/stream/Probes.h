#pragma once

#include "tests/support/Text.h"

#include <kelcore/stream.h>

#include <random>
#include <string>
#include <vector>

/// What a source says that has too little.
inline const char* const kTooShort = "4: Memory block too short";

/// "00 41 FF" for the bytes of a text.
inline std::string Hex(const std::string& bytes) {
    std::string hex;
    for (const char byte : bytes) {
        hex += hex.empty() ? "" : " ";
        hex += "0123456789ABCDEF"[(byte >> 4) & 15];
        hex += "0123456789ABCDEF"[byte & 15];
    }
    return hex;
}

/// The four bytes of a number.
inline std::string Word(std::uint32_t value) {
    return std::string(reinterpret_cast<const char*>(&value), sizeof value);
}

/// The same bytes every time, without a pattern.
inline std::string RandomBytes(std::size_t count) {
    std::mt19937 random(20);
    std::string bytes(count, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

/// The bytes with one bit inverted.
inline std::string WithFlipped(std::string bytes, std::size_t bit) {
    bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ (1 << bit % 8));
    return bytes;
}

/// What a call throws: "code: message", or "" when it returns.
template <class Call>
std::string Failure(Call call) {
    try {
        call();
        return "";
    } catch (const StreamBase::Exception& failure) {
        return std::to_string(failure.code) + ": " + StdW2A(failure.message);
    }
}

/// Keeps every call as a text of its own ("flush" for a flush) and can fail one of them.
class RecordingSink : public OutputStream {
public:
    void Write(const char* data, int count) override {
        Count();
        calls.emplace_back(data, static_cast<std::size_t>(count));
    }
    void Flush() override {
        Count();
        calls.emplace_back("flush");
    }

    std::string Content() const {
        std::string content;
        for (const std::string& call : calls)
            content += call;
        return content;
    }

    std::vector<std::string> calls;
    int failAt = 0; // the number of the call that fails, from 1; it still counts

private:
    void Count() {
        if (++m_calls == failAt)
            throw StreamBase::Exception(99, WideString());
    }

    int m_calls = 0;
};

/// Delivers a text and keeps the size of every call.
class RecordingSource : public InputStream {
public:
    explicit RecordingSource(std::string text) : m_text(std::move(text)), m_memory(m_text) {}
    RecordingSource(const RecordingSource&) = delete;
    void Read(char* data, int count) override {
        sizes.push_back(count);
        m_memory.Read(data, count);
    }

    std::vector<int> sizes;

private:
    std::string m_text;
    MemoryInputStream m_memory;
};
