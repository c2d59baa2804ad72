#pragma once

#include <kelcore/widestring.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace kel::bench {

/// A new folder in the system's temporary one, which goes with this object.
class TempFolder {
public:
    TempFolder() : m_path(Make()) {}
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    const std::filesystem::path& Path() const { return m_path; }

private:
    static std::filesystem::path Make() {
        std::string name = (std::filesystem::temp_directory_path() / "kelcore-bench-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr)
            throw std::runtime_error("no folder can be made in the temporary folder");
        return name;
    }

    const std::filesystem::path m_path;
};

/// A path as the library has it: on drive C:, with backslashes.
inline WideString OnDrive(const std::filesystem::path& path) {
    const std::string text = "C:" + path.string();
    WideString wide(text.begin(), text.end());
    std::replace(wide.begin(), wide.end(), static_cast<unsigned short>('/'), static_cast<unsigned short>('\\'));
    return wide;
}

} // namespace kel::bench
