#include "WholeFile.h"

#include "Report.h"

#include <kelcore/file.h>
#include <kelcore/text.h>

namespace kelexamples {
namespace {

File MakeFile(const WideString& path, unsigned creation) {
    try {
        return {path, GENERIC_WRITE, /*share*/ 0, /*inheritable*/ false, creation};
    } catch (const File::Exception& error) {
        FailOn("cannot make", path, error.m_dwError);
    }
}

/// @return the system's code.
unsigned long Write(File& file, const NarrowString& bytes) {
    try {
        return file.Write(bytes) == bytes.size() ? ERROR_SUCCESS : ERROR_DISK_FULL;
    } catch (const File::Exception& error) {
        return error.m_dwError;
    }
}

} // namespace

void WriteWhole(const WideString& path, const NarrowString& bytes, unsigned creation) {
    File file = MakeFile(path, creation);
    const unsigned long code = Write(file, bytes);
    file.Close();
    if (code == ERROR_SUCCESS)
        return;
    DeleteFileA(StdW2A(path).c_str());
    FailOn("cannot write", path, code);
}

void ReplaceWhole(const WideString& path, const NarrowString& bytes) {
    const WideString part = path + u".part"_w;
    WriteWhole(part, bytes, CREATE_ALWAYS);
    const std::string name = StdW2A(part);
    if (MoveFileExA(name.c_str(), StdW2A(path).c_str(), MOVEFILE_REPLACE_EXISTING))
        return;
    const unsigned long code = GetLastError();
    DeleteFileA(name.c_str());
    FailOn("cannot put into place", path, code);
}

} // namespace kelexamples
