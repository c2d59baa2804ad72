#include "platform/user/Window.h"

#include "platform/kernel/LastError.h"
#include "platform/user/Frames.h"
#include "platform/user/HandleMap.h"

#include <kelcore/platform/testing.h>

#include <algorithm>
#include <cstring>

namespace kel::platform {
namespace {

std::atomic<unsigned> g_layout{0};

HandleMap<HWND, Window>& Handles() {
    static auto& handles = *new HandleMap<HWND, Window>; // outlives static objects that own windows
    return handles;
}

RECT Moved(RECT rect, POINT by) {
    return {rect.left + by.x, rect.top + by.y, rect.right + by.x, rect.bottom + by.y};
}

RECT Within(SIZE size) {
    return {0, 0, size.cx, size.cy};
}

// Null for a window without pixels.
std::shared_ptr<BitmapObject> MakePixels(SIZE size) {
    if (size.cx == 0 || size.cy == 0)
        return nullptr;
    return MakeDeviceBitmap(size.cx, size.cy, PixelFormat::Bgrx32);
}

// What both have in common stays where it is.
void CopyPixels(const BitmapObject& from, const BitmapObject& to) {
    const Surface source = from.Pixels();
    const Surface target = to.Pixels();
    const std::size_t bytes = static_cast<std::size_t>(std::min(source.width, target.width)) * 4;
    for (int y = 0; y < std::min(source.height, target.height); ++y)
        std::memcpy(target.Row(y), source.Row(y), bytes);
}

} // namespace

Window::Window(WindowPlan plan)
    : procedure(plan.windowClass->procedure), m_class(std::move(plan.windowClass)), m_style(plan.style & ~WS_VISIBLE),
      m_exStyle(plan.exStyle), m_name(std::move(plan.name)), m_owner(plan.owner), m_place(plan.place),
      m_pixels(IsChild() ? nullptr : MakePixels(Size())) {
    ++m_class->windows;
}

Window::~Window() {
    --m_class->windows;
}

void Window::Join(Window& parent) {
    parent.m_children.push_back(shared_from_this());
    m_parent = &parent;
    ++g_layout;
}

void Window::Restack(const Window* sibling) {
    auto& siblings = m_parent->m_children;
    const auto is = [](const Window* window) {
        return [window](const std::shared_ptr<Window>& other) { return other.get() == window; };
    };
    const auto self = std::find_if(siblings.begin(), siblings.end(), is(this));
    std::shared_ptr<Window> keep = std::move(*self);
    siblings.erase(self);
    const auto above = std::find_if(siblings.begin(), siblings.end(), is(sibling));
    siblings.insert(above == siblings.end() ? siblings.begin() : above + 1, std::move(keep));
    ++g_layout;
}

void Window::Leave() {
    const std::shared_ptr<Window> keep = shared_from_this();
    if (m_parent) {
        auto& siblings = m_parent->m_children;
        siblings.erase(std::find(siblings.begin(), siblings.end(), keep));
    }
    m_parent = nullptr;
    m_gone = true;
    ++g_layout;
}

void Window::SetPlace(RECT place) {
    const SIZE size{place.right - place.left, place.bottom - place.top};
    const SIZE old = Size();
    if (!IsChild() && (size.cx != old.cx || size.cy != old.cy)) {
        std::shared_ptr<BitmapObject> pixels = MakePixels(size);
        if (m_pixels && pixels)
            CopyPixels(*m_pixels, *pixels);
        m_pixels = std::move(pixels);
    }
    m_place = place;
    ++g_layout;
}

RECT Window::Client() const {
    const RECT frame = FrameOf(m_style, m_exStyle);
    const SIZE size = Size();
    const RECT client{frame.left, frame.top, size.cx - frame.right, size.cy - frame.bottom};
    return {std::min<LONG>(client.left, size.cx), std::min<LONG>(client.top, size.cy),
            std::max<LONG>(client.right, std::min<LONG>(client.left, size.cx)),
            std::max<LONG>(client.bottom, std::min<LONG>(client.top, size.cy))};
}

SIZE Window::ClientSize() const {
    const RECT client = Client();
    return {client.right - client.left, client.bottom - client.top};
}

POINT Window::OnSurface() const {
    if (!m_parent)
        return {0, 0};
    const POINT corner = m_parent->OnSurface();
    const RECT client = m_parent->Client();
    return {corner.x + client.left + m_place.left, corner.y + client.top + m_place.top};
}

POINT Window::OnScreen() const {
    const Window* top = this;
    while (top->m_parent)
        top = top->m_parent;
    const POINT corner = OnSurface();
    return {corner.x + top->m_place.left, corner.y + top->m_place.top};
}

void Window::SetShown(bool shown) {
    m_style = shown ? m_style | WS_VISIBLE : m_style & ~WS_VISIBLE;
    ++g_layout;
}

bool Window::IsVisible() const {
    if (m_gone || !IsShown())
        return false;
    return m_parent ? m_parent->IsVisible() : !IsChild();
}

const std::shared_ptr<BitmapObject>& Window::Pixels() const {
    return m_parent ? m_parent->Pixels() : m_pixels;
}

AreaView Window::View(bool whole) const {
    AreaView view;
    view.whole.format = PixelFormat::Bgrx32;
    const std::shared_ptr<BitmapObject>& pixels = Pixels();
    if (m_gone || !pixels)
        return view;
    view.whole = pixels->Pixels();
    const RECT part = Moved(whole ? Within(Size()) : Client(), OnSurface());
    view.origin = {part.left, part.top};
    view.size = {part.right - part.left, part.bottom - part.top};
    return view;
}

// Takes away what lies over the window, from its parent's edges up to the top-level window; in surface coordinates.
Region Window::Unhidden(Region region, POINT corner) const {
    if (!m_parent)
        return region;
    const POINT parentCorner = m_parent->OnSurface();
    const RECT client = Moved(m_parent->Client(), parentCorner);
    region.Intersect(Region(client));
    if (m_style & WS_CLIPSIBLINGS)
        for (const auto& sibling : m_parent->m_children) {
            if (sibling.get() == this)
                break;
            if (sibling->IsShown())
                region.Subtract(Region(Moved(sibling->m_place, {corner.x - m_place.left, corner.y - m_place.top})));
        }
    return m_parent->Unhidden(std::move(region), parentCorner);
}

Region Window::Reachable(bool whole) const {
    if (!IsVisible() || !Pixels())
        return {};
    const POINT corner = OnSurface();
    const RECT part = Moved(whole ? Within(Size()) : Client(), corner);
    Region region = Unhidden(Region(part), corner);
    if (m_style & WS_CLIPCHILDREN) {
        const RECT client = Client();
        for (const auto& child : m_children)
            if (child->IsShown()) {
                Region covered(Moved(child->m_place, {corner.x + client.left, corner.y + client.top}));
                covered.Intersect(Region(Moved(client, corner)));
                region.Subtract(covered);
            }
    }
    const SIZE surface{Pixels()->Width(), Pixels()->Height()};
    region.Intersect(Region(Within(surface)));
    region.Offset(-part.left, -part.top);
    return region;
}

unsigned Window::Layout() {
    return g_layout;
}

void AddWindow(const std::shared_ptr<Window>& window) {
    window->handle = Handles().Add(window);
}

void RemoveWindow(const Window& window) {
    Handles().Remove(window.handle);
}

std::shared_ptr<Window> FindWindowOf(HWND handle) {
    std::shared_ptr<Window> window = Handles().Find(handle);
    if (!window)
        return Fail(ERROR_INVALID_WINDOW_HANDLE), nullptr;
    if (!window->IsMine())
        return Fail(ERROR_ACCESS_DENIED), nullptr;
    return window;
}

std::shared_ptr<Window> FindWindowOf(HWND handle, const void* given) {
    std::shared_ptr<Window> window = FindWindowOf(handle);
    if (window && !given)
        return Fail(ERROR_INVALID_PARAMETER), nullptr;
    return window;
}

bool IsWindowHandle(HWND handle) {
    return Handles().Find(handle) || Fail(ERROR_INVALID_WINDOW_HANDLE);
}

std::vector<std::shared_ptr<Window>> MyWindows() {
    std::vector<std::shared_ptr<Window>> windows = Handles().All();
    const auto others = [](const std::shared_ptr<Window>& window) { return !window->IsMine(); };
    windows.erase(std::remove_if(windows.begin(), windows.end(), others), windows.end());
    return windows;
}

LRESULT Send(Window& window, UINT message, WPARAM wide, LPARAM data) {
    const std::shared_ptr<Window> keep = window.shared_from_this();
    if (!Handles().Find(window.handle))
        return 0;
    return window.procedure(window.handle, message, wide, data);
}

std::size_t OpenWindows() {
    return Handles().Count();
}

} // namespace kel::platform
