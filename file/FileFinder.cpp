#include <kelcore/file.h>
#include <kelcore/text.h>

#include <utility>

FileFinder::FileFinder() : m_hSearch(nullptr) {
    Reset();
}

// Delegating makes the object whole before the search, so that the destructor ends it should Start throw.
FileFinder::FileFinder(const WideString& pattern, bool withdots) : FileFinder() {
    Start(pattern, withdots);
}

FileFinder::~FileFinder() {
    Reset();
}

void FileFinder::Reset() {
    if (m_hSearch != nullptr) {
        const DWORD error = GetLastError();
        FindClose(m_hSearch);
        SetLastError(error);
    }
    m_hSearch = nullptr;
    m_bFound = false;
    FileData::operator=(FileData());
}

bool FileFinder::Start(const WideString& pattern, bool withdots) {
    WIN32_FIND_DATAA entry;
    const HANDLE search = FindFirstFileA(StdW2A(pattern).c_str(), &entry);
    m_bFound = search != INVALID_HANDLE_VALUE;
    m_hSearch = m_bFound ? search : nullptr;
    if (!m_bFound)
        return false;
    FileData::operator=(entry);
    while (!withdots && m_bFound && IsDots())
        Next();
    if (m_bFound)
        m_strDirectory = File::GetDirname(pattern);
    return m_bFound;
}

bool FileFinder::Next() {
    WIN32_FIND_DATAA entry;
    m_bFound = m_hSearch != nullptr && FindNextFileA(m_hSearch, &entry) != FALSE;
    if (m_bFound)
        FileData::operator=(entry);
    return m_bFound;
}

WideString FileFinder::GetFilePath() const {
    return File::MakePath(m_strDirectory, GetFileName());
}

WideString FileFinder::GetFileTitleA() const {
    return File::GetFileTitleA(GetFileName());
}

WideString FileFinder::GetShortPath() const {
    return File::GetShortPath(GetFilePath());
}
