#include "bench/dir/TreeSize.h"
#include "bench/support/Areas.h"
#include "bench/support/Random.h"
#include "bench/support/TempFolder.h"

#include <kelcore/file.h>

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
    Tree() {
        Random random(6);
        for (int folder = 0; folder < kFolders; ++folder) {
            const std::filesystem::path path = m_root.Path() / ("folder" + std::to_string(folder));
            std::filesystem::create_directory(path);
            for (int file = 0; file < kFilesPerFolder; ++file)
                MakeFile(path / ("file" + std::to_string(file) + ".dat"), random.Below(8192));
        }
    }

    std::string Root() const { return m_root.Path().string(); }

private:
    static void MakeFile(const std::filesystem::path& path, std::uintmax_t size) {
        if (!std::ofstream(path))
            throw std::runtime_error("no file can be made in the temporary folder");
        std::filesystem::resize_file(path, size);
    }

    const TempFolder m_root;
};

const std::string& Folder() {
    static const Tree tree;
    static const std::string root = tree.Root();
    return root;
}

std::int64_t AddKelCore(const std::string& folder) {
    return File::GetSizeRecursive(OnDrive(folder));
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
