#include "platform/gdi/BitmapObject.h"

#include "platform/gdi/Colours.h"

#include <cstdlib>
#include <cstring>
#include <limits>

namespace kel::platform {
namespace {

constexpr std::size_t kCacheLine = 64;

int CheckedRowBytes(const BitmapLayout& layout) {
    const std::int64_t bytes = DibRowBytes(std::int64_t{layout.width} * BitsPerPixel(layout.format));
    if (bytes > std::numeric_limits<std::int32_t>::max() / layout.height)
        throw std::bad_alloc();
    return static_cast<int>(bytes);
}

constexpr DWORD kMasks555[3] = {0x7C00, 0x03E0, 0x001F};
constexpr DWORD kMasks565[3] = {0xF800, 0x07E0, 0x001F};
constexpr DWORD kMasks888[3] = {0xFF0000, 0x00FF00, 0x0000FF};

} // namespace

const DWORD* MasksOf(PixelFormat format) {
    return format == PixelFormat::Rgb555 ? kMasks555 : format == PixelFormat::Rgb565 ? kMasks565 : kMasks888;
}

BitmapObject::BitmapObject(BitmapLayout layout)
    : GdiObject(kType), m_layout(std::move(layout)), m_rowBytes(CheckedRowBytes(m_layout)) {
    const std::size_t size = static_cast<std::size_t>(m_rowBytes) * static_cast<std::size_t>(m_layout.height);
    // Large blocks of calloc are the host's untouched pages.
    m_block = std::calloc(size + kCacheLine, 1);
    if (!m_block)
        throw std::bad_alloc();
    const auto address = reinterpret_cast<std::uintptr_t>(m_block);
    m_memory = static_cast<std::uint8_t*>(m_block) + (kCacheLine - address % kCacheLine) % kCacheLine;
}

BitmapObject::~BitmapObject() {
    std::free(m_block);
}

Surface BitmapObject::Pixels() const {
    Surface surface;
    surface.stride = m_layout.topDown ? m_rowBytes : -std::ptrdiff_t{m_rowBytes};
    surface.top = m_layout.topDown ? m_memory : m_memory + std::ptrdiff_t{m_rowBytes} * (m_layout.height - 1);
    surface.width = m_layout.width;
    surface.height = m_layout.height;
    surface.format = m_layout.format;
    surface.table = m_layout.table.empty() ? nullptr : m_layout.table.data();
    surface.tableSize = static_cast<int>(m_layout.table.size());
    surface.deviceDependent = !m_layout.section;
    return surface;
}

BITMAP BitmapObject::Description() const {
    BITMAP description{};
    description.bmWidth = m_layout.width;
    description.bmHeight = m_layout.height;
    description.bmWidthBytes = IsSection() ? m_rowBytes : VisibleRowBytes();
    description.bmPlanes = 1;
    description.bmBitsPixel = static_cast<WORD>(Bits());
    description.bmBits = IsSection() ? m_memory : nullptr;
    return description;
}

DIBSECTION BitmapObject::SectionDescription() const {
    DIBSECTION description{};
    description.dsBm = Description();
    BITMAPINFOHEADER& header = description.dsBmih;
    header.biSize = sizeof header;
    header.biWidth = m_layout.width;
    header.biHeight = m_layout.height; // positive for either order of rows
    header.biPlanes = 1;
    header.biBitCount = static_cast<WORD>(Bits());
    header.biSizeImage = static_cast<DWORD>(m_rowBytes) * static_cast<DWORD>(m_layout.height);
    header.biClrUsed = static_cast<DWORD>(m_layout.table.size());
    if (m_layout.bitFields || Bits() == 16) {
        header.biCompression = BI_BITFIELDS;
        std::memcpy(description.dsBitfields, MasksOf(m_layout.format), sizeof description.dsBitfields);
    }
    return description;
}

int BitmapObject::Describe(int size, void* buffer) const {
    const auto room = static_cast<unsigned>(size);
    if (buffer && room < sizeof(BITMAP))
        return 0;
    if (buffer && IsSection() && room >= sizeof(DIBSECTION)) {
        const DIBSECTION description = SectionDescription();
        std::memcpy(buffer, &description, sizeof description);
        return sizeof description;
    }
    const BITMAP description = Description();
    if (buffer)
        std::memcpy(buffer, &description, sizeof description);
    return sizeof description;
}

std::string BitmapObject::Details() const {
    return std::to_string(Width()) + " x " + std::to_string(Height()) + " x " + std::to_string(Bits()) +
           (IsSection() ? " section" : "");
}

bool FormatOfBits(UINT bits, PixelFormat& format) {
    constexpr PixelFormat kFormats[] = {PixelFormat::Mono,   PixelFormat::Indexed4, PixelFormat::Indexed8,
                                        PixelFormat::Rgb555, PixelFormat::Bgr24,    PixelFormat::Bgrx32};
    for (const PixelFormat candidate : kFormats)
        if (bits <= static_cast<UINT>(BitsPerPixel(candidate))) {
            format = candidate;
            return true;
        }
    return false;
}

std::shared_ptr<BitmapObject> MakeDeviceBitmap(int width, int height, PixelFormat format) {
    BitmapLayout layout;
    layout.width = width;
    layout.height = height;
    layout.format = format;
    if (IsIndexed(format) && format != PixelFormat::Mono) {
        const RGBQUAD* table = DefaultTable(BitsPerPixel(format));
        layout.table.assign(table, table + (1 << BitsPerPixel(format)));
    }
    return std::make_shared<BitmapObject>(std::move(layout));
}

} // namespace kel::platform
