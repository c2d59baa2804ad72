#include "bench/gdi/Page.h"
#include "bench/support/Areas.h"
#include "bench/support/Random.h"

#include <kelcore/gdi.h>
#include <kelcore/text.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <stdexcept>

namespace kel::bench {

std::vector<std::string> PageLines() {
    Random random(11);
    std::vector<std::string> lines;
    for (int i = 0; i != kLines; ++i)
        lines.push_back(random.Letters(100));
    return lines;
}

namespace {

constexpr int kAlive = 1000;

// --- owners of objects that others hold as well

struct Brushes {
    using Wrapper = Brush;
    static bool Create(Brush& brush, int number) { return brush.Create(static_cast<unsigned long>(number)); }
    static HGDIOBJ HandleOf(const Brush& brush) { return brush.m_hBrush; }
    static HGDIOBJ New(int number) { return CreateSolidBrush(static_cast<COLORREF>(number)); }
};

struct Pens {
    using Wrapper = Pen;
    static bool Create(Pen& pen, int number) { return pen.Create(PS_SOLID, 1, static_cast<unsigned long>(number)); }
    static HGDIOBJ HandleOf(const Pen& pen) { return pen.m_hPen; }
    static HGDIOBJ New(int number) { return CreatePen(PS_SOLID, 1, static_cast<COLORREF>(number)); }
};

// One face in many sizes, as programs have it.
struct Fonts {
    using Wrapper = Font;
    static LOGFONTA Describe(int number) { return {-number, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, "Liberation Sans"}; }
    static bool Create(Font& font, int number) {
        LOGFONTA description = Describe(number);
        return font.CreateFontIndirectA(description);
    }
    static HGDIOBJ HandleOf(const Font& font) { return font.m_hFont; }
    static HGDIOBJ New(int number) {
        const LOGFONTA description = Describe(number);
        return ::CreateFontIndirectA(&description);
    }
};

// Numbers in an order that the cache cannot foresee.
std::vector<int> Numbers() {
    std::vector<int> numbers(kAlive);
    for (int i = 0; i != kAlive; ++i)
        numbers[static_cast<std::size_t>(i)] = i + 1;
    Random random(5);
    for (std::size_t i = numbers.size() - 1; i != 0; --i)
        std::swap(numbers[i], numbers[random.Below(static_cast<std::uint32_t>(i) + 1)]);
    return numbers;
}

template <class Kind>
class Shared {
public:
    Shared() {
        for (std::size_t i = 0; i != kAlive; ++i)
            Kind::Create(m_keepers[i], m_numbers[i]);
    }
    void Create() {
        for (std::size_t i = 0; i != kAlive; ++i)
            Kind::Create(m_more[i], m_numbers[i]);
    }
    void Release() {
        for (auto& wrapper : m_more)
            wrapper.Destroy();
    }
    std::string Count() const {
        int shared = 0;
        for (std::size_t i = 0; i != kAlive; ++i)
            shared += Kind::HandleOf(m_keepers[i]) == Kind::HandleOf(m_more[i]);
        return std::to_string(shared);
    }

private:
    std::vector<int> m_numbers = Numbers();
    using Wrappers = std::vector<typename Kind::Wrapper>;
    Wrappers m_keepers = Wrappers(kAlive), m_more = Wrappers(kAlive);
};

// An object of its own for everyone.
template <class Kind>
class Plain {
public:
    void Create() {
        for (std::size_t i = 0; i != kAlive; ++i)
            m_handles[i] = Kind::New(m_numbers[i]);
    }
    void Release() {
        for (HGDIOBJ& handle : m_handles)
            DeleteObject(std::exchange(handle, nullptr));
    }
    std::string Count() const {
        return std::to_string(m_handles.size() -
                              static_cast<std::size_t>(std::count(m_handles.begin(), m_handles.end(), nullptr)));
    }

private:
    std::vector<int> m_numbers = Numbers();
    std::vector<HGDIOBJ> m_handles = std::vector<HGDIOBJ>(kAlive);
};

template <class Owners>
Call CreateJob() {
    const auto owners = std::make_shared<Owners>();
    const auto result = [owners] {
        owners->Create();
        std::string count = owners->Count();
        owners->Release();
        return count;
    };
    return {[owners] { owners->Create(); }, result, [owners] { owners->Release(); }};
}

template <class Owners>
Call ReleaseJob() {
    const auto owners = std::make_shared<Owners>();
    owners->Create();
    return {[owners] { owners->Release(); }, [owners] { return owners->Count(); }, [owners] { owners->Create(); }};
}

template <class Kind>
void AddOwnerJobs(const std::string& kind) {
    const std::string create = "create 1,000 " + kind + " in use", release = "release 1,000 " + kind + " in use";
    AddJob("gdi", "kelcore", create, CreateJob<Shared<Kind>>);
    AddJob("gdi", "plain", create, CreateJob<Plain<Kind>>);
    AddJob("gdi", "kelcore", release, ReleaseJob<Shared<Kind>>);
    AddJob("gdi", "plain", release, ReleaseJob<Plain<Kind>>);
}

// --- drawing

// A picture of 32 bits a pixel with its context; kept until the program ends.
struct Picture {
    Picture(int width, int height) : pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {
        const BITMAPINFO info = {{sizeof(BITMAPINFOHEADER), width, height, 1, 32, BI_RGB, 0, 0, 0, 0, 0}, {}};
        void* bits = nullptr;
        if (SelectObject(dc.m_hDC, CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0)) == nullptr)
            throw std::runtime_error("no section");
        memory = static_cast<std::uint32_t*>(bits);
    }
    bool Has(std::uint32_t pixel) const { return std::find(memory, memory + pixels, pixel) != memory + pixels; }
    std::size_t pixels;
    DC dc{CreateCompatibleDC(nullptr), nullptr};
    std::uint32_t* memory;
};

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;
constexpr std::size_t kPixels = std::size_t{kWidth} * kHeight;
constexpr std::uint32_t kPixel = 0x302010;

std::string Filled(const std::uint32_t* pixels) {
    return std::to_string(std::count(pixels, pixels + kPixels, kPixel));
}

Call FillJob() {
    auto* const picture = new Picture(kWidth, kHeight);
    const auto run = [=] { picture->dc.FillSolidRect(0, 0, kWidth, kHeight, RGB(0x30, 0x20, 0x10)); };
    return {run, [=] { return run(), Filled(picture->memory); }};
}

Call PlainFillJob() {
    const auto pixels = std::make_shared<std::vector<std::uint32_t>>(kPixels);
    const auto run = [=] {
        std::fill(pixels->begin(), pixels->end(), kPixel);
        benchmark::ClobberMemory();
    };
    return {run, [=] { return run(), Filled(pixels->data()); }};
}

Call MemsetJob() {
    const auto pixels = std::make_shared<std::vector<std::uint32_t>>(kPixels);
    return {[=] {
        std::memset(pixels->data(), 0x30, kPixels * 4);
        benchmark::ClobberMemory();
    }};
}

Call DrawPage() {
    auto* const picture = new Picture(kPageWidth, kPageHeight);
    auto* const font =
        new Font(LOGFONTA{-kTextHeight, 0, 0, 0, 0, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, "Liberation Sans"});
    SelectObject(picture->dc.m_hDC, font->m_hFont);
    SetBkMode(picture->dc.m_hDC, TRANSPARENT);
    std::vector<WideString> lines;
    for (const std::string& line : PageLines())
        lines.push_back(StdA2W(line));
    picture->dc.FillSolidRect(0, 0, kPageWidth, kPageHeight, 0xFFFFFF);
    const auto run = [=] {
        for (int i = 0; i != kLines; ++i)
            picture->dc.ExtTextOutA(0, i * kLineHeight, 0, {}, lines[static_cast<std::size_t>(i)], nullptr);
    };
    return {run, [=] { return run(), picture->Has(0) ? "ink" : "none"; }};
}

const Enter<PageDrawer> entered{{"kelcore", DrawPage}};

} // namespace

void AddGdiJobs() {
    AddOwnerJobs<Brushes>("brushes");
    AddOwnerJobs<Pens>("pens");
    AddOwnerJobs<Fonts>("fonts");
    AddJob("gdi", "kelcore", "fill 1920x1080", FillJob);
    AddJob("gdi", "plain", "fill 1920x1080", PlainFillJob);
    AddJob("gdi", "limit-memset", "fill 1920x1080", MemsetJob);
    for (const PageDrawer& drawer : Contenders<PageDrawer>())
        AddJob("gdi", drawer.who, "10,000 glyphs", drawer.make);
}

} // namespace kel::bench
