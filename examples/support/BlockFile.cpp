#include "BlockFile.h"

#include "Report.h"

#include <kelcore/file.h>
#include <kelcore/text.h>

namespace kelexamples {
namespace {

constexpr int kDamagedBlock = 3;
constexpr int kEndOfData = 4;

std::unique_ptr<FileInputStream> Open(const WideString& path) {
    try {
        return std::make_unique<FileInputStream>(path);
    } catch (const StreamBase::Exception& error) {
        throw Failure{"cannot read " + Shown(path) + ": " + FirstLine(error.message)};
    }
}

// The length field of the first block is below 4,096: its last byte is 0, or 0xFF when it is scrambled.
bool IsScrambled(const WideString& path, const char* kind) {
    const auto file = Open(path);
    try {
        unsigned char length[4] = {};
        for (unsigned char& byte : length)
            *file >> byte;
        return length[3] == 0xFF;
    } catch (const StreamBase::Exception& error) {
        if (error.code == kEndOfData)
            throw Failure{Shown(path) + " is no " + kind + ": it is too short"};
        throw Failure{"cannot read " + Shown(path) + ": " + FirstLine(error.message)};
    }
}

// What is behind the first object may be damaged.
bool BeginsWith(const WideString& path, const char* kind, int firstClass) {
    BlockFileInput input(path, kind);
    try {
        int found = 0;
        input.Stream() >> found;
        return found == firstClass;
    } catch (const StreamBase::Exception&) {
        return false;
    }
}

} // namespace

BlockFileOutput::BlockFileOutput(const WideString& path, bool scramble, const char* kind, int firstClass)
    : m_path(File::GetFullPath(path)), m_partPath(m_path + u".part"_w) {
    if (File::FileExists(m_path) && !BeginsWith(m_path, kind, firstClass))
        throw Failure{Shown(m_path) + " is no " + kind + ": it is not replaced"};
    try {
        m_file = std::make_unique<FileOutputStream>(m_partPath);
    } catch (const StreamBase::Exception& error) {
        throw Failure{"cannot write " + Shown(m_path) + ": " + FirstLine(error.message)};
    }
    OutputStream* below = m_file.get();
    if (scramble) {
        m_scrambler = std::make_unique<CryptingOutputStream>(*below);
        below = m_scrambler.get();
    }
    m_blocks = std::make_unique<CRCOutputStream>(*below);
}

BlockFileOutput::~BlockFileOutput() {
    if (!m_file)
        return;
    Close();
    DeleteFileA(StdW2A(m_partPath).c_str());
}

void BlockFileOutput::Close() {
    m_blocks.reset();
    m_scrambler.reset();
    m_file.reset();
}

void BlockFileOutput::Commit() {
    m_blocks->Flush();
    // The scrambling layer passes no flush on.
    m_file->Flush();
    Close();
    const std::string part = StdW2A(m_partPath);
    if (!MoveFileExA(part.c_str(), StdW2A(m_path).c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
        const unsigned long code = GetLastError();
        DeleteFileA(part.c_str());
        FailOn("cannot put into place", m_path, code);
    }
}

void BlockCounter::Read(char* data, int count) {
    if (m_part == 0) {
        ++m_block;
        m_blockOffset = m_offset;
    }
    m_inner.Read(data, count);
    m_offset += static_cast<unsigned>(count);
    m_part = (m_part + 1) % 3;
}

BlockFileInput::BlockFileInput(const WideString& path, const char* kind)
    : m_path(File::GetFullPath(path)), m_kind(kind),
      m_size(static_cast<unsigned long long>(File::GetSizeRecursive(m_path))) {
    const bool scrambled = IsScrambled(m_path, m_kind);
    m_file = Open(m_path);
    InputStream* below = m_file.get();
    if (scrambled) {
        m_scrambler = std::make_unique<CryptingInputStream>(*below);
        below = m_scrambler.get();
    }
    m_counter = std::make_unique<BlockCounter>(*below);
    m_blocks = std::make_unique<CRCInputStream>(*m_counter);
}

void BlockFileInput::ExpectEnd() const {
    if (m_counter->Offset() != m_size)
        throw Failure{Shown(m_path) + " goes on behind its end, from file offset " +
                      std::to_string(m_counter->Offset()) + " on"};
}

std::string BlockFileInput::Describe(const StreamBase::Exception& error) const {
    const std::string block =
        "block " + std::to_string(m_counter->Block()) + " at file offset " + std::to_string(m_counter->BlockOffset());
    const std::string name = Shown(m_path);
    // Nothing tells a damaged beginning from that of a file of another kind.
    const std::string orNone = m_counter->Block() == 1 ? std::string(" or no ") + m_kind : "";
    if (error.code == kDamagedBlock)
        return name + " is damaged" + orNone + ": " + block + ": " + FirstLine(error.message);
    if (error.code == kEndOfData)
        return name + " is cut off: it ends in " + block;
    return name + " is no sound " + m_kind + ": " + FirstLine(error.message) + " (in " + block + ")";
}

} // namespace kelexamples
