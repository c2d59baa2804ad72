#pragma once

#include <streambuf>
#include <string>

namespace kel::bench {

/// The least a stream buffer over memory can do, so that a peer that needs one pays for nothing else.
class LeanOutput : public std::streambuf {
public:
    const std::string& Content() const { return m_content; }

protected:
    std::streamsize xsputn(const char* data, std::streamsize count) override {
        m_content.append(data, static_cast<std::size_t>(count));
        return count;
    }
    int_type overflow(int_type unit) override {
        m_content.push_back(traits_type::to_char_type(unit));
        return unit;
    }

private:
    std::string m_content;
};

/// Reads a block that must outlive it.
class LeanInput : public std::streambuf {
public:
    explicit LeanInput(const std::string& block) {
        char* const begin = const_cast<char*>(block.data());
        setg(begin, begin, begin + block.size());
    }
};

} // namespace kel::bench
