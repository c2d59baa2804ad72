#include "tests/compare/Cases.h"

#include <array>
#include <cstdlib>
#include <cstring>

namespace kel::compare {

Random::Random(std::uint32_t seed) : m_state(seed * 0x9E3779B97F4A7C15ull + 0x1234567) {
    for (int i = 0; i < 4; ++i)
        Next();
}

// PCG: a linear generator whose output is permuted.
std::uint32_t Random::Next() {
    const std::uint64_t old = m_state;
    m_state = old * 6364136223846793005ull + 1442695040888963407ull;
    const auto shifted = static_cast<std::uint32_t>((old >> 18 ^ old) >> 27);
    const auto turn = static_cast<int>(old >> 59);
    return shifted >> turn | shifted << (-turn & 31);
}

int Random::Depth() {
    static constexpr std::array<int, 6> kDepths = {1, 4, 8, 16, 24, 32};
    return kDepths[Below(kDepths.size())];
}

HBRUSH PatternBrush(Random& random) {
    std::array<unsigned char, 16> rows;
    for (unsigned char& byte : rows)
        byte = static_cast<unsigned char>(random.Next());
    const HBITMAP pattern = CreateBitmap(8, 8, 1, 1, rows.data());
    const HBRUSH brush = CreatePatternBrush(pattern);
    DeleteObject(pattern);
    return brush;
}

Sheet::Sheet(int width, int height) : m_dc(CreateCompatibleDC(nullptr)) {
    m_info.bmiHeader.biSize = sizeof m_info.bmiHeader;
    m_info.bmiHeader.biWidth = width;
    m_info.bmiHeader.biHeight = -height;
    m_info.bmiHeader.biPlanes = 1;
    m_info.bmiHeader.biBitCount = 32;
    void* memory = nullptr;
    m_bitmap = CreateDIBSection(m_dc, &m_info, DIB_RGB_COLORS, &memory, nullptr, 0);
    m_pixels = static_cast<DWORD*>(memory);
    SelectObject(m_dc, m_bitmap);
}

Sheet::~Sheet() {
    DeleteDC(m_dc);
    DeleteObject(m_bitmap);
}

int RunCases(int argc, char** argv, int count, void (*run)(int number, bool dump)) {
    const bool dump = argc > 1 && std::strcmp(argv[argc - 1], "--dump") == 0;
    const int numbers = dump ? argc - 1 : argc;
    const int cases = numbers > 1 ? std::atoi(argv[1]) : count;
    const int first = numbers > 2 ? std::atoi(argv[2]) : 0;
    for (int number = first; number < first + cases; ++number)
        run(number, dump);
    return 0;
}

} // namespace kel::compare
