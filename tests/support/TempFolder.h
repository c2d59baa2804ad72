#pragma once

#include <doctest/doctest.h>
#include <kelcore/platform.h>
#include <kelcore/text.h>

#include <string>

/// A new empty folder for one test, removed with all that is in it. Paths are wide, file contents are bytes.
class TempFolder {
public:
    TempFolder() {
        char folder[MAX_PATH];
        char name[MAX_PATH];
        REQUIRE(GetTempPathA(sizeof folder, folder) != 0);
        REQUIRE(GetTempFileNameA(folder, "kel", 0, name) != 0);
        REQUIRE(DeleteFileA(name));
        REQUIRE(CreateDirectoryA(name, nullptr));
        m_path = name;
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder() { Remove(m_path); }

    /// The folder's own path, or that of @p name in it, with backslashes.
    String Path(const std::string& name = {}) const { return StdA2W(Narrow(name)); }

    /// Makes a folder in it. @return its path.
    String Folder(const std::string& name) const {
        REQUIRE(CreateDirectoryA(Narrow(name).c_str(), nullptr));
        return Path(name);
    }

    /// Makes or replaces a file. @return its path.
    String Write(const std::string& name, const std::string& bytes) const {
        WriteAt(Narrow(name), bytes);
        return Path(name);
    }

    /// The bytes of a file.
    std::string Read(const std::string& name) const { return ReadAt(Narrow(name)); }

    /// The same for a file anywhere.
    static void WriteAt(const std::string& path, const std::string& bytes) {
        const HANDLE file = Open(path, GENERIC_WRITE, CREATE_ALWAYS);
        DWORD count = 0;
        CHECK(WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr));
        CloseHandle(file);
        REQUIRE(count == bytes.size());
    }

    static std::string ReadAt(const std::string& path) {
        const HANDLE file = Open(path, GENERIC_READ, OPEN_EXISTING);
        std::string bytes(GetFileSize(file, nullptr), '\0');
        DWORD count = 0;
        CHECK(ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr));
        CloseHandle(file);
        REQUIRE(count == bytes.size());
        return bytes;
    }

private:
    std::string Narrow(const std::string& name) const { return name.empty() ? m_path : m_path + "\\" + name; }

    static HANDLE Open(const std::string& path, DWORD access, DWORD disposition) {
        const HANDLE file = CreateFileA(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, disposition,
                                        FILE_ATTRIBUTE_NORMAL, nullptr);
        REQUIRE(file != INVALID_HANDLE_VALUE);
        return file;
    }

    static void Remove(const std::string& folder) {
        WIN32_FIND_DATAA entry;
        const HANDLE search = FindFirstFileA((folder + "\\*").c_str(), &entry);
        for (BOOL found = search != INVALID_HANDLE_VALUE; found; found = FindNextFileA(search, &entry))
            RemoveEntry(folder, entry);
        FindClose(search);
        RemoveDirectoryA(folder.c_str());
    }

    static void RemoveEntry(const std::string& folder, const WIN32_FIND_DATAA& entry) {
        const std::string name = entry.cFileName;
        const std::string path = folder + "\\" + name;
        if (name == "." || name == "..")
            return;
        SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
        const bool isLink = (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
        if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
            DeleteFileA(path.c_str());
        else if (isLink)
            RemoveDirectoryA(path.c_str());
        else
            Remove(path);
    }

    std::string m_path;
};
