#include "toolkit/EventSink.h"

#include <atomic>
#include <utility>

namespace kel::toolkit {
namespace {

// Numbers differ between controls, so that one of another control ends nothing.
DWORD NextCookie() {
    static std::atomic<DWORD> last{0};
    const DWORD cookie = ++last;
    return cookie != 0 ? cookie : ++last;
}

} // namespace

DWORD EventSink::Connect(IUnknown* sink) {
    void* answered = nullptr;
    if (!sink || FAILED(sink->QueryInterface(kEventInterface, &answered)) || !answered)
        return 0;
    Drop();
    m_sink = static_cast<IUnknown*>(answered);
    m_cookie = NextCookie();
    return m_cookie;
}

void EventSink::Disconnect(DWORD cookie) {
    if (cookie == m_cookie)
        Drop();
}

void EventSink::Drop() {
    if (m_sink)
        std::exchange(m_sink, nullptr)->Release();
    m_cookie = 0;
}

} // namespace kel::toolkit
