// Makes sample pictures: what a folder of pictures holds that has been collected over the years, a few of them
// unusable. The same bytes every time.
//
// usage: kelsamples FOLDER

#include "Files.h"

#include <atomic>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <thread>

namespace {

/// The first part of a file, as an interrupted copy leaves it.
std::string Cut(const std::string& path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str().substr(0, bytes.str().size() / 3);
}

/// The picture itself, a copy under another name, and a copy that was interrupted.
void WriteSunrises(const std::string& path) {
    WriteJpeg(path, Sunrise(), JpegKind::Colours);
    const std::string folder = std::filesystem::path(path).parent_path().string();
    std::filesystem::copy_file(path, folder + "/sunrise, the best one of the whole summer.jpg",
                               std::filesystem::copy_options::overwrite_existing);
    WriteBytes(folder + "/half a sunrise.jpg", Cut(path));
}

const struct {
    const char* name;
    void (*write)(const std::string& path);
} kSamples[] = {
    {"sunrise.jpg", WriteSunrises},
    {"aurora.webp", [](const std::string& path) { WriteWebP(path, Aurora()); }},
    {"daisy.jpg", [](const std::string& path) { WriteJpeg(path, Daisy(), JpegKind::Colours); }},
    {"balloons in print.jpg", [](const std::string& path) { WriteJpeg(path, Balloons(), JpegKind::Inks); }},
    {"lighthouse.jpg", [](const std::string& path) { WriteJpeg(path, Lighthouse(), JpegKind::Sideways); }},
    {"night at sea.jpg", [](const std::string& path) { WriteJpeg(path, NightSea(), JpegKind::Colours); }},
    {"old sloop.jpg", [](const std::string& path) { WriteJpeg(path, Ship(), JpegKind::Greys); }},
    {"chart.png", [](const std::string& path) { WritePng(path, Chart()); }},
    {"dunes.tif", [](const std::string& path) { WriteTiff(path, Dunes(), 8); }},
    {"mist.tif", [](const std::string& path) { WriteTiff(path, Mist(), 16); }},
    {"nautilus.tif", [](const std::string& path) { WriteTiff(path, Engraving()); }},
    {"silk.png", [](const std::string& path) { WritePng(path, Silk()); }},
    {"logo.png", [](const std::string& path) { WritePng(path, Logo()); }},
    {"tile.bmp", [](const std::string& path) { WriteBmp(path, Tile()); }},
    {"icon.bmp", [](const std::string& path) { WriteBmp(path, Icon()); }},
    {"animation.gif", [](const std::string& path) { WriteGif(path, Icon()); }},
    {"notes.txt", [](const std::string& path) { WriteBytes(path, "Sort the pictures of last summer.\n"); }},
};

/// Writes samples until there are none left; other threads do the same.
void WriteSome(const std::string& folder, std::atomic<std::size_t>& next, std::atomic<bool>& failed) {
    for (std::size_t i = next++; i < std::size(kSamples); i = next++) {
        try {
            kSamples[i].write(folder + "/" + kSamples[i].name);
        } catch (const std::exception& failure) {
            std::fprintf(stderr, "kelsamples: %s\n", failure.what());
            failed = true;
        }
    }
}

} // namespace

int main(int count, char** arguments) {
    // No folder is called so on purpose; the empty name would be the root.
    if (count != 2 || *arguments[1] == '\0' || *arguments[1] == '-') {
        std::fprintf(stderr, "usage: kelsamples FOLDER\n");
        return 2;
    }
    std::error_code refused; // shows when the first file cannot be written
    std::filesystem::create_directories(arguments[1], refused);
    std::atomic<std::size_t> next = 0;
    std::atomic<bool> failed = false;
    {
        std::vector<std::jthread> threads;
        for (unsigned i = 0; i < std::max(1U, std::thread::hardware_concurrency()); ++i)
            threads.emplace_back([&] { WriteSome(arguments[1], next, failed); });
    }
    return failed ? 1 : 0;
}
