#pragma once

#include <doctest/doctest.h>
#include <kelcore/platform.h>

#include <string>

/// A new empty folder that is the current directory for one test, and goes with all that is in it.
class Workplace {
public:
    Workplace() {
        char text[MAX_PATH];
        REQUIRE(GetCurrentDirectoryA(sizeof text, text) != 0);
        m_before = text;
        char folder[MAX_PATH];
        REQUIRE(GetTempPathA(sizeof folder, folder) != 0);
        REQUIRE(GetTempFileNameA(folder, "kel", 0, text) != 0);
        REQUIRE(DeleteFileA(text));
        REQUIRE(CreateDirectoryA(text, nullptr));
        REQUIRE(SetCurrentDirectoryA(text));
        REQUIRE(GetCurrentDirectoryA(sizeof text, text) != 0);
        m_path = text;
    }
    Workplace(const Workplace&) = delete;
    Workplace& operator=(const Workplace&) = delete;
    ~Workplace() {
        SetCurrentDirectoryA(m_before.c_str());
        Remove(m_path);
    }

    /// The folder, as the current directory is named.
    const std::string& Path() const { return m_path; }

    /// Makes or empties a file and writes @p bytes.
    static void Write(const std::string& name, const std::string& bytes = "") {
        const HANDLE file = CreateFileA(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
        REQUIRE(file != INVALID_HANDLE_VALUE);
        DWORD written = 0;
        CHECK(WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr));
        CloseHandle(file);
    }

    static std::string Read(const std::string& name) {
        const HANDLE file =
            CreateFileA(name.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
        REQUIRE(file != INVALID_HANDLE_VALUE);
        std::string bytes(GetFileSize(file, nullptr), '\0');
        DWORD read = 0;
        CHECK(ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr));
        CloseHandle(file);
        return bytes;
    }

private:
    static void Remove(const std::string& folder) {
        WIN32_FIND_DATAA entry;
        const HANDLE search = FindFirstFileA((folder + "\\*").c_str(), &entry);
        for (BOOL found = search != INVALID_HANDLE_VALUE; found; found = FindNextFileA(search, &entry)) {
            const std::string name = entry.cFileName;
            const std::string path = folder + "\\" + name;
            SetFileAttributesA(path.c_str(), entry.dwFileAttributes & ~FILE_ATTRIBUTE_READONLY);
            if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
                DeleteFileA(path.c_str());
            else if (name != "." && name != "..")
                Remove(path);
        }
        FindClose(search);
        RemoveDirectoryA(folder.c_str());
    }

    std::string m_before;
    std::string m_path;
};

/// The last error of a call that has to fail; 0 if it did not.
inline DWORD ErrorOf(BOOL succeeded) {
    return succeeded ? 0 : GetLastError();
}

/// Whether the platform is the layer, whose wide character is not the compiler's: some rows hold there alone, where the
/// referee's answer is known to differ from Windows.
constexpr bool kOnLayer = sizeof(wchar_t) != 2;
