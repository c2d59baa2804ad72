#include "bench/dir/TreeSize.h"
#include "bench/support/Areas.h"
#include "bench/support/Random.h"

#include <kelcore/file.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>

namespace kel::bench {
namespace {

constexpr int kFolders = 200;
constexpr int kFilesPerFolder = 100;

// A tree in the temporary folder, which goes with the program.
class Tree {
public:
    Tree() : m_root(MakeRoot()) {
        Random random(6);
        for (int folder = 0; folder < kFolders; ++folder) {
            const std::filesystem::path path = m_root / ("folder" + std::to_string(folder));
            std::filesystem::create_directory(path);
            for (int file = 0; file < kFilesPerFolder; ++file)
                MakeFile(path / ("file" + std::to_string(file) + ".dat"), random.Below(8192));
        }
    }
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;
    ~Tree() {
        std::error_code ignored;
        std::filesystem::remove_all(m_root, ignored);
    }

    std::string Root() const { return m_root.string(); }

private:
    static std::filesystem::path MakeRoot() {
        std::string name = (std::filesystem::temp_directory_path() / "kelcore-bench-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr)
            throw std::runtime_error("no folder can be made in the temporary folder");
        return name;
    }

    static void MakeFile(const std::filesystem::path& path, std::uintmax_t size) {
        if (!std::ofstream(path))
            throw std::runtime_error("no file can be made in the temporary folder");
        std::filesystem::resize_file(path, size);
    }

    std::filesystem::path m_root;
};

const std::string& Folder() {
    static const Tree tree;
    static const std::string root = tree.Root();
    return root;
}

std::int64_t AddKelCore(const std::string& folder) {
    WideString path(folder.begin(), folder.end());
    std::replace(path.begin(), path.end(), static_cast<unsigned short>('/'), static_cast<unsigned short>('\\'));
    const unsigned short drive[] = {'C', ':', 0};
    return File::GetSizeRecursive(drive + path);
}

const Enter<TreeSize> kelcore{{"kelcore", &AddKelCore}};

} // namespace

void AddDirJobs() {
    for (const TreeSize& size : Contenders<TreeSize>()) {
        AddJob("dir", size.who, "size of 20k files", [size]() -> Call {
            return {[size] { benchmark::DoNotOptimize(size.add(Folder())); },
                    [size] { return std::to_string(size.add(Folder())); }};
        });
    }
}

} // namespace kel::bench
