#pragma once

#include <new>

namespace kel {

/// A static object that no destructor ends: static objects of clients may need it after the library's own are gone.
template <class State>
class Lasting {
public:
    Lasting() : m_state(new (m_memory) State) {}
    Lasting(const Lasting&) = delete;
    Lasting& operator=(const Lasting&) = delete;
    State& operator*() const noexcept { return *m_state; }

private:
    alignas(State) unsigned char m_memory[sizeof(State)];
    State* m_state;
};

} // namespace kel
