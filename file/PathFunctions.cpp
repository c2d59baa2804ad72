#include <kelcore/file.h>

#include "text/UnitScan.h"

#include <string_view>

namespace {

using View = std::basic_string_view<unsigned short>;

constexpr unsigned short kNul = 0;
constexpr unsigned short kBackslash = '\\';
constexpr unsigned short kColon = ':';
constexpr unsigned short kDot = '.';

// The C library is asked beyond ASCII only: every locale has the same letters below.
bool IsLetter(unsigned short unit) {
    if (unit < 0x80)
        return (unit | 0x20) >= 'a' && (unit | 0x20) <= 'z';
    return iswalpha(unit) != 0;
}

bool BeginsWithDrive(View path) {
    return path.size() >= 2 && path[1] == kColon && IsLetter(path[0]);
}

bool BeginsWithRoot(View path) {
    return path.size() >= 3 && path[2] == kBackslash && BeginsWithDrive(path);
}

bool IsRoot(View path) {
    return BeginsWithRoot(path) && (path.size() == 3 || path[3] == kNul);
}

bool IsEmpty(View text) {
    return text.empty() || text[0] == kNul;
}

View WithoutTrailing(View text, unsigned short unit) {
    while (!text.empty() && text.back() == unit)
        text.remove_suffix(1);
    return text;
}

std::size_t FindLast(View text, unsigned short unit) {
    const unsigned short* const found = kel::UnitScan::FindLast(text.data(), text.data() + text.size(), unit);
    return found == nullptr ? View::npos : static_cast<std::size_t>(found - text.data());
}

// The text up to its first @p unit, all of it if there is none.
View UpTo(View text, unsigned short unit) {
    const unsigned short* const end = text.data() + text.size();
    return View(text.data(), static_cast<std::size_t>(kel::UnitScan::FindFirst(text.data(), end, unit) - text.data()));
}

// The last component of @p path. A root's is its backslash.
View BaseName(View path) {
    if (IsRoot(path))
        return path.substr(2, 1);
    if (IsEmpty(path))
        return path.substr(0, 0);
    const std::size_t separator = FindLast(path, kBackslash);
    if (separator != View::npos)
        return UpTo(path.substr(separator + 1), kNul);
    return BeginsWithDrive(path) ? path.substr(2) : path;
}

// Where CutExtension cuts @p path, its length if nowhere. Neither text ends in NUL units.
std::size_t ExtensionStart(View path, View ext) {
    if (ext.size() > path.size())
        return path.size();
    const std::size_t found = ext.empty() ? FindLast(path, kDot) : path.rfind(ext, path.size() - ext.size());
    if (found == View::npos || FindLast(path.substr(found), kBackslash) != View::npos)
        return path.size();
    return found;
}

View CutView(View path, View ext) {
    path = WithoutTrailing(path, kNul);
    return path.substr(0, ExtensionStart(path, WithoutTrailing(ext, kNul)));
}

// One allocation for the whole result.
WideString Concat(View first, View second, View third = {}) {
    WideString result;
    result.reserve(first.size() + second.size() + third.size());
    result.append(first).append(second).append(third);
    return result;
}

} // namespace

WideString File::GetDirname(const WideString& path) {
    if (IsRoot(path))
        return path;
    const std::size_t separator = FindLast(path, kBackslash);
    if (separator == View::npos)
        return WideString(1, kDot);
    const bool isDrive = separator == 2 && BeginsWithDrive(path);
    return WideString(path, 0, isDrive ? separator + 1 : separator);
}

WideString File::GetBasename(const WideString& path, const WideString& ext) {
    View name = BaseName(path);
    if (!IsEmpty(ext) && name.ends_with(ext) && !IsRoot(path))
        name.remove_suffix(ext.size());
    return WideString(name);
}

WideString File::GetFileExtension(const WideString& path) {
    const View name = BaseName(path);
    const std::size_t dot = FindLast(name, kDot);
    return dot == View::npos ? WideString() : WideString(name.substr(dot));
}

WideString File::GetFileTitleA(const WideString& path) {
    const View name = BaseName(path);
    return WideString(name.substr(0, FindLast(name, kDot)));
}

WideString File::CutExtension(const WideString& path, const WideString& ext) {
    return WideString(CutView(path, ext));
}

WideString File::SwitchExtension(const WideString& path, const WideString& newext) {
    return IsEmpty(path) ? WideString() : Concat(CutView(path, {}), newext);
}

WideString File::MakePath(const WideString& dir, const WideString& name) {
    if (IsEmpty(dir))
        return name;
    if (IsRoot(dir))
        return Concat(WithoutTrailing(dir, kNul), name);
    return Concat(WithoutTrailing(dir, kBackslash), View(&kBackslash, 1), name);
}

bool File::IsDriveRoot(const WideString& path) {
    return IsRoot(path);
}

bool File::IsPathAbsolute(const WideString& path) {
    return BeginsWithRoot(path) || (path.size() >= 2 && path[0] == kBackslash && path[1] == kBackslash);
}

WideString File::GetFilePath() const {
    return m_strPath;
}

WideString File::GetDirname() const {
    return GetDirname(m_strPath);
}

WideString File::GetBasename() const {
    return GetBasename(m_strPath, {});
}

WideString File::GetFileName() const {
    return GetBasename();
}

WideString File::GetFileExtension() const {
    return GetFileExtension(m_strPath);
}

WideString File::GetFileTitleA() const {
    return GetFileTitleA(m_strPath);
}

WideString File::GetShortPath() const {
    return GetShortPath(m_strPath);
}
