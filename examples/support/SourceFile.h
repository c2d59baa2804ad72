#pragma once

#include <kelcore/file.h>

#include <string>

namespace kelexamples {

/// A file that is read from its start to its end while others may go on using it.
class SourceFile {
public:
    /// @throws Failure if the file cannot be opened.
    explicit SourceFile(const WideString& path);

    /// The next @p count bytes, fewer at the end, none behind it.
    /// @throws Failure if the file cannot be read.
    std::string Next(unsigned count);

private:
    WideString m_path;
    File m_file;
};

/// Whether two files agree byte for byte.
/// @throws Failure if one of them cannot be read.
bool HaveSameBytes(const WideString& one, const WideString& other);

/// Whether an entry found in a folder is a link that leads to a folder or nowhere, or a device: these are not followed.
/// @param attributes what GetFileAttributesA tells of it.
bool IsLeftOut(const FileFinder& found, unsigned long attributes);

} // namespace kelexamples
