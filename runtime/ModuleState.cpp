#include "runtime/ModuleState.h"

#include "runtime/Lasting.h"

namespace kel::ModuleState {
namespace {

// An empty list owns nothing, so emptying both at the end is enough.
struct Emptying {
    ~Emptying() {
        Get().modules.Clear();
        Get().targets.Clear();
    }
};

Lasting<State> g_state;
const Emptying g_emptying;

} // namespace

State& Get() noexcept {
    return *g_state;
}

} // namespace kel::ModuleState
