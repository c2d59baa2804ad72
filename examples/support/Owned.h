#pragma once

#include <kelcore/runtime/objects.h>

#include <memory>

namespace kelexamples {

/// Releases a counted object at the end of its scope.
struct Releaser {
    void operator()(IUnknown* object) const { object->Release(); }
};
template <class Object>
using Owned = std::unique_ptr<Object, Releaser>;

} // namespace kelexamples
