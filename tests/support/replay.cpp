// Runs a fuzz target over the files of a folder, in the order of their names, and over the empty input. The inputs
// count as one test case, in the words of the other test programs.

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

static std::vector<std::filesystem::path> FilesOf(const char* folder) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

static std::string ContentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw std::runtime_error("cannot read " + file.string());
    return {std::istreambuf_iterator<char>(stream), {}};
}

// The input lies in a block of exactly its size, so that a read past its end is seen; its name is printed beforehand,
// so that a crash names it.
static void Replay(const std::string& name, const std::string& content) {
    std::cout << name << std::endl;
    const std::vector<std::uint8_t> block(content.begin(), content.end());
    LLVMFuzzerTestOneInput(block.data(), block.size());
}

int main(int count, char** arguments) try {
    const auto files = FilesOf(count > 1 ? arguments[1] : ".");
    if (files.empty())
        throw std::runtime_error("no inputs");
    Replay("the empty input", "");
    for (const auto& file : files)
        Replay(file.filename().string(), ContentOf(file));
    std::cout << "[doctest] test cases: 1 | 1 passed | 0 failed | 0 skipped\n";
    return 0;
} catch (const std::exception& failure) {
    std::cout << failure.what() << "\n[doctest] test cases: 1 | 0 passed | 1 failed | 0 skipped\n";
    return 1;
}
