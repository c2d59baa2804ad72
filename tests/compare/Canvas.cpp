#include "tests/compare/Canvas.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

namespace kel::compare {
namespace {

constexpr int kScreenDepth = 32;
constexpr std::uint32_t kPaletteSize = 20; // of a context by default
constexpr DWORD k565[] = {0xF800, 0x07E0, 0x001F};
constexpr DWORD k888[] = {0xFF0000, 0x00FF00, 0x0000FF};
constexpr std::size_t kInfoBytes = sizeof(BITMAPINFOHEADER) + 256 * sizeof(RGBQUAD);

std::size_t RowBytes(int width, int depth) {
    return (static_cast<std::size_t>(width) * static_cast<std::size_t>(depth) + 31) / 32 * 4;
}

DWORD Crc32(const std::vector<unsigned char>& bytes) {
    DWORD crc = 0xFFFFFFFF;
    for (const unsigned char byte : bytes) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit)
            crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320 : 0);
    }
    return ~crc;
}

// Bits of a row's last byte that are no pixel may be anything.
void ClearUnusedBits(std::vector<unsigned char>& rows, int usedBits, std::size_t rowBytes) {
    if (usedBits % 8 == 0)
        return;
    const auto keep = static_cast<unsigned char>(0xFF00 >> usedBits % 8);
    for (std::size_t row = 0; row < rows.size(); row += rowBytes)
        rows[row + static_cast<std::size_t>(usedBits) / 8] &= keep;
}

BITMAPINFOHEADER Header(int width, int height, int depth) {
    BITMAPINFOHEADER header = {};
    header.biSize = sizeof header;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = static_cast<WORD>(depth);
    return header;
}

} // namespace

Canvas Canvas::Any(Random& random) {
    const bool deviceDependent = random.Below(5) == 0;
    const int depth = deviceDependent ? (random.Below(2) == 0 ? 1 : kScreenDepth) : random.Depth();
    return Canvas(random, depth, deviceDependent);
}

Canvas::Canvas(Random& random, int depth, bool deviceDependent)
    : m_width(random.Between(1, 70)), m_height(random.Between(1, 40)), m_depth(depth),
      m_deviceDependent(deviceDependent), m_topDown(!deviceDependent && random.Below(3) == 0),
      m_bitFields(!deviceDependent && (depth == 16 || depth == 32) && random.Below(3) == 0) {
    MakeInfo(random);
    Fill(random);
    m_dc = CreateCompatibleDC(nullptr);
    if (m_deviceDependent) {
        m_bitmap = CreateBitmap(m_width, m_height, 1, static_cast<UINT>(depth), nullptr);
        SetDIBits(m_dc, m_bitmap, 0, static_cast<UINT>(m_height), Bits(), Info(), DIB_RGB_COLORS);
    } else {
        m_bitmap = CreateDIBSection(m_dc, Info(), DIB_RGB_COLORS, &m_pixels, nullptr, 0);
        std::memcpy(m_pixels, m_dib.data(), m_dib.size());
    }
    Select();
}

Canvas::~Canvas() {
    Release();
    DeleteDC(m_dc);
    DeleteObject(m_bitmap);
    if (m_brush)
        DeleteObject(m_brush);
}

std::string Canvas::Name() const {
    return std::to_string(m_depth) + (m_deviceDependent ? "d" : "") + (m_bitFields ? "f" : "") + (m_topDown ? "v" : "");
}

void Canvas::MakeInfo(Random& random) {
    m_info.resize(kInfoBytes);
    BITMAPINFOHEADER header = Header(m_width, m_topDown ? -m_height : m_height, m_depth);
    if (m_bitFields)
        header.biCompression = BI_BITFIELDS;
    std::memcpy(m_info.data(), &header, sizeof header);
    if (m_bitFields)
        std::memcpy(m_info.data() + sizeof header, m_depth == 16 ? k565 : k888, sizeof k565);
    if (m_depth > 8)
        return;
    auto* const table = reinterpret_cast<RGBQUAD*>(m_info.data() + sizeof header);
    const int last = (1 << m_depth) - 1;
    m_oddTable = !m_deviceDependent && random.Below(2) == 0;
    for (int i = 0; i <= last; ++i) {
        const bool isEnd = !m_oddTable && (i == 0 || i == last);
        const COLORREF colour = isEnd ? (i == 0 ? RGB(0, 0, 0) : RGB(255, 255, 255)) : random.Colour();
        table[i] = {GetBValue(colour), GetGValue(colour), GetRValue(colour), 0};
    }
}

// Half of the pictures have few colours, so that keys and comparisons meet.
void Canvas::Fill(Random& random) {
    const std::size_t row = RowBytes(m_width, m_depth);
    m_dib.resize(row * static_cast<std::size_t>(m_height));
    const bool few = random.Below(2) == 0;
    std::array<std::uint32_t, 4> values;
    for (std::uint32_t& value : values)
        value = random.Next();
    const std::size_t step = m_depth == 24 ? 3 : m_depth == 32 ? 4 : m_depth == 16 ? 2 : 1;
    for (int y = 0; y < m_height; ++y)
        for (std::size_t x = 0; x + step <= row; x += step) {
            const std::uint32_t value = few ? values[random.Below(values.size())] : random.Next();
            std::memcpy(m_dib.data() + static_cast<std::size_t>(y) * row + x, &value, step);
        }
}

COLORREF Canvas::AnyColour(Random& random) const {
    const int x = random.Between(0, m_width - 1);
    const int y = random.Between(0, m_height - 1);
    return GetPixel(m_dc, x, y) & 0xFFFFFF;
}

void Canvas::Premultiply() {
    auto* const pixels = static_cast<unsigned char*>(m_depth == 32 ? m_pixels : nullptr);
    for (std::size_t i = 0; pixels && i < m_dib.size(); i += 4)
        for (std::size_t channel = 0; channel < 3; ++channel)
            pixels[i + channel] = static_cast<unsigned char>(pixels[i + channel] * pixels[i + 3] / 255);
}

UINT Canvas::UsePaletteIndices(Random& random) {
    if (m_depth > 8)
        return DIB_RGB_COLORS;
    auto* const indices = reinterpret_cast<WORD*>(m_info.data() + sizeof(BITMAPINFOHEADER));
    const std::uint32_t own = 1u << m_depth;
    const std::uint32_t bound = random.Below(8) == 0 ? kPaletteSize : std::min(own, kPaletteSize);
    for (std::uint32_t i = 0; i < own; ++i) {
        indices[i] = static_cast<WORD>(random.Below(bound));
        m_farIndices = m_farIndices || indices[i] >= own;
    }
    return DIB_PAL_COLORS;
}

std::string Canvas::ChooseBrush(Random& random) {
    // Wine dithers colours on monochrome bitmaps, so these get patterns alone.
    const std::uint32_t chosen = random.Below(4);
    const std::uint32_t kind = m_depth == 1 ? 3 : chosen;
    std::string name = " solid";
    m_repeats = kind >= 2;
    if (kind == 0)
        return " white";
    if (kind == 1) {
        m_brush = CreateSolidBrush(random.Colour());
    } else if (kind == 2) {
        const int hatch = random.Between(HS_HORIZONTAL, HS_DIAGCROSS);
        m_brush = CreateHatchBrush(hatch, random.Colour());
        name = " hatch" + std::to_string(hatch);
    } else {
        m_brush = PatternBrush(random);
        name = " pattern";
    }
    const int originX = random.Between(-9, 9);
    SetBrushOrgEx(m_dc, originX, random.Between(-9, 9), nullptr);
    SelectObject(m_dc, m_brush);
    return name;
}

void Canvas::Release() {
    SelectObject(m_dc, m_before);
    SelectObject(m_dc, GetStockObject(WHITE_BRUSH));
}

void Canvas::Select() {
    m_before = SelectObject(m_dc, m_bitmap);
    if (m_brush)
        SelectObject(m_dc, m_brush);
}

DWORD Canvas::Checksum(bool coloursAlone) const {
    if (m_deviceDependent)
        return ChecksumAs(24, 0, static_cast<UINT>(m_height));
    GdiFlush();
    const auto* const pixels = static_cast<const unsigned char*>(m_pixels);
    std::vector<unsigned char> bytes(pixels, pixels + m_dib.size());
    const std::size_t step = m_depth == 16 ? 2 : 4;
    for (std::size_t i = step - 1;
         coloursAlone && !(m_depth == 16 && m_bitFields) && (m_depth == 16 || m_depth == 32) && i < bytes.size();
         i += step)
        bytes[i] &= m_depth == 16 ? 0x7F : 0;
    return Crc32(bytes);
}

DWORD Canvas::ChecksumAs(int depth, UINT start, UINT lines) const {
    std::vector<unsigned char> info(kInfoBytes);
    const BITMAPINFOHEADER header = Header(m_width, m_height, depth);
    std::memcpy(info.data(), &header, sizeof header);
    std::vector<unsigned char> rows(RowBytes(m_width, depth) * static_cast<std::size_t>(m_height));
    const HDC dc = CreateCompatibleDC(nullptr);
    const int result =
        GetDIBits(dc, m_bitmap, start, lines, rows.data(), reinterpret_cast<BITMAPINFO*>(info.data()), DIB_RGB_COLORS);
    DeleteDC(dc);
    ClearUnusedBits(rows, m_width * depth, RowBytes(m_width, depth));
    rows.insert(rows.end(), info.begin() + sizeof header, info.end());
    return Crc32(rows) + static_cast<DWORD>(result);
}

void Canvas::Dump() const {
    SelectClipRgn(m_dc, nullptr);
    for (int y = 0; y < m_height; ++y) {
        for (int x = 0; x < m_width; ++x)
            std::printf("%06X ", static_cast<unsigned>(GetPixel(m_dc, x, y)));
        std::printf("\n");
    }
}

} // namespace kel::compare
