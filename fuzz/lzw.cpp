// Files of foreign bytes, asked for what they are refused for: the look at them ends and lets go of the file, GIF files
// are refused, and files that are not TIFF are not.

#include <kelcore/picture.h>
#include <kelcore/text.h>

#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

void Require(bool holds) {
    if (!holds)
        std::abort();
}

struct Picture : XPDib {
    using XPDib::CheckLZW;
};

const std::string& FileName() {
    static const std::string name = [] {
        char folder[MAX_PATH], file[MAX_PATH];
        Require(GetTempPathA(sizeof folder, folder) != 0 && GetTempFileNameA(folder, "lzw", 0, file) != 0);
        return std::string(file);
    }();
    return name;
}

void WriteBytes(const std::string& bytes) {
    const HANDLE file = CreateFileA(FileName().c_str(), GENERIC_WRITE, /*share*/ 0, /*security*/ nullptr, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, /*template*/ nullptr);
    DWORD count = 0;
    Require(WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &count, /*overlapped*/ nullptr) &&
            count == bytes.size());
    CloseHandle(file);
}

bool BeginsWith(const std::string& bytes, const char* text, std::size_t count) {
    return bytes.size() >= 4 && bytes.compare(0, count, text, count) == 0;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    WriteBytes(bytes);
    const bool refused = Picture::CheckLZW(StdA2W(FileName()));
    const bool isTiff = BeginsWith(bytes, "II*\0", 4) || BeginsWith(bytes, "MM\0*", 4);
    Require(isTiff || refused == BeginsWith(bytes, "GIF", 3));
    Require(DeleteFileA(FileName().c_str()) != 0); // on Windows, an open file cannot be deleted
    return 0;
}
