#pragma once

#include <kelcore/imaging/picture.h>
#include <kelcore/imaging/toolkit.h>

#include <type_traits>

/// @file
/// Calls of a toolkit control. Those that fail throw.
namespace kel {

/// Calls an operation.
/// @return its result, which is not negative.
/// @throws ToolkitError for a negative result, and E_POINTER for a null @p control.
template <class... Parameters>
HRESULT CallToolkit(toolkit::IControl* control, const toolkit::Operation<Parameters...>& operation,
                    std::type_identity_t<Parameters>... arguments) {
    const HRESULT result = control ? operation(control, arguments...) : E_POINTER;
    if (FAILED(result))
        throw ToolkitError(result, control);
    return result;
}

/// What an operation with a single argument, which is a result, gives out; zero if it leaves it alone.
template <class Value>
Value AskToolkit(toolkit::IControl* control, const toolkit::Operation<Value*>& operation) {
    Value value{};
    CallToolkit(control, operation, &value);
    return value;
}

/// The block of the control's picture, null when it has none. It stays the control's.
inline toolkit::Block PictureOf(toolkit::IControl* control) {
    return AskToolkit(control, toolkit::GetDibHandle);
}

/// Width and height of the control's picture, whatever the order of its rows; (0, 0) without one, and without a
/// control.
Size SizeOfPicture(toolkit::IControl* control);

inline SHORT LoadStatusOf(toolkit::IControl* control) {
    return AskToolkit(control, toolkit::GetLoadStatus);
}

/// Loads a file: its short path, as far as the ANSI code page spells it.
/// @throws ToolkitError also E_OUTOFMEMORY when there is no memory for the path.
void LoadFromFile(toolkit::IControl* control, const WideString& path);

/// LoadFromFile with the outcome asked for.
/// @throws XPDib::XPException unless the control has a picture afterwards.
void LoadPicture(toolkit::IControl* control, const WideString& path);

/// @throws XPDib::XPException unless the last load went well and left a picture.
void CheckLoaded(toolkit::IControl* control);

/// Throws away what the last load came to.
inline void ForgetLoadStatus(toolkit::IControl* control) {
    LoadStatusOf(control);
}

} // namespace kel
