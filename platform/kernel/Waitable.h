#pragma once

#include "platform/kernel/Handles.h"

#include <condition_variable>
#include <mutex>

namespace kel::platform {

/// An object that threads wait for. What m_mutex guards decides whether it is signalled.
class Waitable : public Object {
public:
    using Object::Object;

    /// Waits until the object is signalled and takes what one wait takes of it.
    /// @return false when @p milliseconds passed before that.
    bool Wait(DWORD milliseconds);

protected:
    ~Waitable() override = default;

    /// Whether the object is signalled; if so, takes what one wait takes. m_mutex is held.
    virtual bool Take() = 0;

    std::mutex m_mutex;
    std::condition_variable m_signalled;
};

} // namespace kel::platform
