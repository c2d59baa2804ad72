#include "Loads.h"

#include "Report.h"

#include <limits>

namespace kelalbum {

using kelexamples::Failure;

Loads::Loads() : m_ended(CreateSemaphoreA(nullptr, /*initial*/ 0, std::numeric_limits<LONG>::max(), /*name*/ nullptr)) {
    if (!m_ended)
        throw Failure{"cannot wait for pictures: " + kelexamples::SystemText(GetLastError())};
}

Loads::~Loads() {
    while (!m_loads.empty())
        Take();
    CloseHandle(m_ended);
}

void Loads::Begin(const WideString& path) {
    m_loads.push_back(std::make_unique<Load>());
    try {
        m_loads.back()->LoadBitmapDeferred(path, this, Rect(), /*userValue*/ 0);
    } catch (...) {
        // Nothing was queued.
        m_loads.pop_back();
        throw Failure{"the imaging toolkit cannot be started"};
    }
}

Loaded Loads::Take() {
    WaitForSingleObject(m_ended, INFINITE);
    const std::unique_ptr<Load> first = std::move(m_loads.front());
    m_loads.pop_front();
    return {*first, first->failure};
}

void Loads::OnBitmapLoaded(const WideString&, XPDib*, unsigned int) {
    ReleaseSemaphore(m_ended, 1, nullptr);
}

// The list of loads is the other thread's.
void Loads::OnBitmapLoadFailed(const WideString&, XPDib* picture, XPDib::XPException code, unsigned int) {
    static_cast<Load*>(picture)->failure = code;
    ReleaseSemaphore(m_ended, 1, nullptr);
}

} // namespace kelalbum
