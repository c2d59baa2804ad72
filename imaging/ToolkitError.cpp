#include <kelcore/imaging/toolkit.h>

#include <kelcore/imaging/picture.h>

namespace kel {
namespace {

IUnknown* WithReference(IUnknown* object) {
    if (object)
        object->AddRef();
    return object;
}

} // namespace

ToolkitError::ToolkitError(HRESULT result, IUnknown* control) noexcept
    : _com_error(result), m_control(WithReference(control)) {}

ToolkitError::ToolkitError(const ToolkitError& other) noexcept
    : _com_error(other), m_control(WithReference(other.m_control)) {}

ToolkitError& ToolkitError::operator=(const ToolkitError& other) noexcept {
    IUnknown* const control = WithReference(other.m_control);
    if (m_control)
        m_control->Release();
    m_control = control;
    _com_error::operator=(other);
    return *this;
}

ToolkitError::~ToolkitError() noexcept {
    if (m_control)
        m_control->Release();
}

IUnknown* ToolkitError::Interface() const noexcept {
    return m_control;
}

const IID& ToolkitError::InterfaceId() noexcept {
    return toolkit::kControlInterface;
}

} // namespace kel
