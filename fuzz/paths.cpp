// Path functions over arbitrary units: what holds for every path, whatever it is made of.

#include <kelcore/file.h>
#include <kelcore/text.h>

#include <cstdint>
#include <cstdlib>

namespace {

const String kBackslash = u"\\"_w;
const WideString kNone;

void Require(bool holds) {
    if (!holds)
        std::abort();
}

bool Has(const WideString& text, unsigned short unit) {
    return text.find(unit) != WideString::npos;
}

bool EndsWith(const WideString& text, const WideString& end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

void TakeApart(const WideString& path) {
    const WideString directory = File::GetDirname(path);
    const WideString name = File::GetBasename(path, kNone);
    Require(File::GetFileTitleA(path) + File::GetFileExtension(path) == name);
    if (File::IsDriveRoot(path)) {
        Require(File::IsPathAbsolute(path) && directory == path && name == kBackslash);
        return;
    }
    Require(!Has(name, '\\'));
    if (!Has(path, '\\')) {
        Require(directory == u"."_w && EndsWith(path, name));
        return;
    }
    Require(!Has(name, 0));
    // Apart from units behind a NUL and from doubled separators, joining undoes the taking apart.
    const std::size_t separator = path.rfind('\\');
    if (!Has(path, 0) && separator != 0 && path[separator - 1] != '\\')
        Require(File::MakePath(directory, name) == path);
}

void CutOff(const WideString& path, const WideString& ext) {
    const WideString whole = File::GetBasename(path, kNone);
    const WideString name = File::GetBasename(path, ext);
    Require(name == whole || name + ext == whole);

    const WideString cut = File::CutExtension(path, ext);
    Require(path.compare(0, cut.size(), cut) == 0);
    Require(File::CutExtension(path + WideString(3, 0), ext) == cut);
    const WideString switched = File::SwitchExtension(path, ext);
    const bool empty = path.empty() || path[0] == 0;
    Require(switched == (empty ? kNone : File::CutExtension(path, kNone) + ext));
}

void AskTheSystem(const WideString& path, unsigned int room) {
    Require(StdW2A(File::CompactPath(path, room)).size() <= room);
    const WideString full = File::GetFullPath(path);
    // The system takes every unit in front of a colon for a drive.
    Require(full == path || File::IsPathAbsolute(full) || (full.size() > 2 && full[1] == ':'));
    Require(File::GetFullPath(full) == full);
}

WideString Units(const std::uint8_t* data, std::size_t size) {
    WideString text;
    for (std::size_t i = 0; i + 1 < size; i += 2)
        text += static_cast<unsigned short>(data[i] | data[i + 1] << 8);
    return text;
}

} // namespace

// One byte for the room of a compacted path, one for the units of the first text, then the units of both.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2)
        return 0;
    const WideString units = Units(data + 2, size - 2);
    const WideString first = units.substr(0, data[1]);
    const WideString second = units.substr(first.size());
    TakeApart(first);
    TakeApart(second);
    CutOff(first, second);
    const WideString joined = File::MakePath(first, second);
    Require(EndsWith(joined, second));
    TakeApart(joined);
    AskTheSystem(joined, data[0]);
    return 0;
}
