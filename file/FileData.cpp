#include <kelcore/file.h>
#include <kelcore/text.h>

#include <string_view>

namespace {

constexpr unsigned short kDot = '.';

// As StdA2W, into the field itself: a search converts every name, and no field's text is longer than its bytes.
template <std::size_t Size>
void ConvertName(const char* name, unsigned short (&field)[Size]) {
    if (MultiByteToWideChar(CP_ACP, /*flags*/ 0, name, -1, reinterpret_cast<WCHAR*>(field), Size) == 0)
        field[0] = 0;
}

bool SameName(const unsigned short* left, const unsigned short* right) {
    return _wcsicmp(reinterpret_cast<const WCHAR*>(left), reinterpret_cast<const WCHAR*>(right)) == 0;
}

bool SameTime(FILETIME left, FILETIME right) {
    return left.dwLowDateTime == right.dwLowDateTime && left.dwHighDateTime == right.dwHighDateTime;
}

} // namespace

FileData::FileData()
    : m_dwAttributes(0), m_ftCreation(), m_ftLastAccess(), m_ftLastWrite(), m_dwSizeHigh(0), m_dwSizeLow(0),
      m_dwReserved(), m_szName(), m_szShortName() {}

FileData::FileData(const FileData& other) = default;

FileData& FileData::operator=(const FileData& other) = default;

const FileData& FileData::operator=(const WIN32_FIND_DATAA& entry) {
    m_dwAttributes = entry.dwFileAttributes;
    m_ftCreation = entry.ftCreationTime;
    m_ftLastAccess = entry.ftLastAccessTime;
    m_ftLastWrite = entry.ftLastWriteTime;
    m_dwSizeHigh = entry.nFileSizeHigh;
    m_dwSizeLow = entry.nFileSizeLow;
    ConvertName(entry.cFileName, m_szName);
    ConvertName(entry.cAlternateFileName, m_szShortName);
    return *this;
}

bool FileData::operator==(const FileData& other) const {
    return m_dwAttributes == other.m_dwAttributes && GetFileSize() == other.GetFileSize() &&
           SameTime(m_ftCreation, other.m_ftCreation) && SameTime(m_ftLastWrite, other.m_ftLastWrite) &&
           SameName(m_szName, other.m_szName) && SameName(m_szShortName, other.m_szShortName);
}

bool FileData::operator!=(const FileData& other) const {
    return !(*this == other);
}

WideString FileData::GetFileName() const {
    return m_szName;
}

WideString FileData::GetShortFileName() const {
    return m_szShortName[0] == 0 ? m_szName : m_szShortName;
}

WideString FileData::GetFileExtension() const {
    const std::basic_string_view<unsigned short> name(m_szName);
    const std::size_t dot = name.rfind(kDot);
    return dot == name.npos ? WideString() : WideString(name.substr(dot));
}

__int64 FileData::GetFileSize() const {
    return static_cast<__int64>((static_cast<unsigned __int64>(m_dwSizeHigh) << 32) | m_dwSizeLow);
}

FILETIME FileData::GetCreationTime() const {
    return m_ftCreation;
}

FILETIME FileData::GetLastAccessTime() const {
    return m_ftLastAccess;
}

FILETIME FileData::GetLastWriteTime() const {
    return m_ftLastWrite;
}

bool FileData::IsReadOnly() const {
    return (m_dwAttributes & FILE_ATTRIBUTE_READONLY) != 0;
}

bool FileData::IsHidden() const {
    return (m_dwAttributes & FILE_ATTRIBUTE_HIDDEN) != 0;
}

bool FileData::IsSystem() const {
    return (m_dwAttributes & FILE_ATTRIBUTE_SYSTEM) != 0;
}

bool FileData::IsDirectory() const {
    return (m_dwAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool FileData::IsArchived() const {
    return (m_dwAttributes & FILE_ATTRIBUTE_ARCHIVE) != 0;
}

bool FileData::IsCompressed() const {
    return (m_dwAttributes & FILE_ATTRIBUTE_COMPRESSED) != 0;
}

bool FileData::IsDots() const {
    if (!IsDirectory() || m_szName[0] != kDot)
        return false;
    return m_szName[1] == 0 || (m_szName[1] == kDot && m_szName[2] == 0);
}
