#include "SourceFile.h"

#include "Report.h"

namespace kelexamples {
namespace {

constexpr unsigned kPiece = 64 * 1024;

} // namespace

SourceFile::SourceFile(const WideString& path) : m_path(path) {
    try {
        m_file.OpenForReading(path, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, false,
                              FILE_FLAG_SEQUENTIAL_SCAN);
    } catch (const File::Exception& error) {
        FailOn("cannot read", path, error.m_dwError);
    }
}

std::string SourceFile::Next(unsigned count) {
    try {
        std::string piece;
        m_file.Read(piece, count);
        return piece;
    } catch (const File::Exception& error) {
        FailOn("cannot read", m_path, error.m_dwError);
    }
}

bool HaveSameBytes(const WideString& one, const WideString& other) {
    SourceFile first(one);
    SourceFile second(other);
    for (;;) {
        const std::string piece = first.Next(kPiece);
        if (piece != second.Next(kPiece))
            return false;
        if (piece.empty())
            return true;
    }
}

// Where links are followed, the attributes tell of their target, and there are none of one that leads nowhere; where
// they are not, the attributes tell of the link.
bool IsLeftOut(const FileFinder& found, unsigned long attributes) {
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DEVICE) != 0)
        return true;
    const bool isFolder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    return isFolder && (!found.IsDirectory() || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0);
}

} // namespace kelexamples
