#include "runtime/ModuleState.h"

#include <new>

namespace kel::ModuleState {
namespace {

// Memory that no destructor ends. An empty list owns nothing, so emptying both at the end is enough.
class LastingState {
public:
    LastingState() : m_state(new (m_memory) State) {}
    LastingState(const LastingState&) = delete;
    LastingState& operator=(const LastingState&) = delete;
    State& operator*() const noexcept { return *m_state; }

private:
    alignas(State) unsigned char m_memory[sizeof(State)];
    State* m_state;
};

struct Emptying {
    ~Emptying() {
        Get().modules.Clear();
        Get().targets.Clear();
    }
};

LastingState g_state;
const Emptying g_emptying;

} // namespace

State& Get() noexcept {
    return *g_state;
}

} // namespace kel::ModuleState
