#include <kelcore/runtime/modules.h>

#include "runtime/ModuleState.h"

namespace {

kel::LiveList<ResourceTarget>& Targets() noexcept {
    return kel::ModuleState::Get().targets;
}

} // namespace

ResourceTarget::ResourceTarget() {
    Targets().Add(this);
}

ResourceTarget::ResourceTarget(const ResourceTarget&) {
    Targets().Add(this);
}

ResourceTarget& ResourceTarget::operator=(const ResourceTarget&) {
    return *this;
}

ResourceTarget::~ResourceTarget() {
    Targets().Remove(this);
}
