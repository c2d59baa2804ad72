#include <kelcore/runtime/objects.h>

KelUnknown::KelUnknown() : m_count(1) {}

KelUnknown::KelUnknown(const KelUnknown& other) : IUnknown(), m_count(other.m_count) {}

KelUnknown& KelUnknown::operator=(const KelUnknown& other) {
    m_count = other.m_count;
    return *this;
}

KelUnknown::~KelUnknown() = default;

HRESULT STDMETHODCALLTYPE KelUnknown::QueryInterface(REFIID, void** object) {
    *object = nullptr;
    return E_NOINTERFACE;
}

ULONG STDMETHODCALLTYPE KelUnknown::AddRef() {
    return ++m_count;
}

ULONG STDMETHODCALLTYPE KelUnknown::Release() {
    const unsigned __int32 left = --m_count;
    if (left == 0)
        delete this;
    return left;
}

namespace {

// `delete` of a null pointer does nothing, but the compiler may assume that `this` is never null; the pointer therefore
// takes a way on which it may be.
[[gnu::noinline]] void DeleteObject(KelUnknown* object) {
    delete object;
}

} // namespace

void KelUnknown::Destroy() {
    KelUnknown* volatile self = this;
    DeleteObject(self);
}
