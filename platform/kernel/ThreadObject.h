#pragma once

#include "platform/kernel/Waitable.h"

#include <sys/types.h>

namespace kel::platform {

/// Lets the calling thread run as one of @p level does, if the host allows it.
void RunAtPriority(int level);

/// What the layer knows of a thread; signalled once its routine has returned.
class ThreadObject final : public Waitable {
public:
    static constexpr ObjectKind kKind = ObjectKind::Thread;

    /// The calling thread's. One that the layer did not start has its object made here, at the first call.
    /// @throws std::bad_alloc
    static std::shared_ptr<ThreadObject> Current();

    /// For a thread that the calling one is about to start.
    ThreadObject();

    /// The calling thread is the one this stands for.
    void Begin(std::shared_ptr<ThreadObject> self);
    /// Its routine has returned.
    void End();

    void SetLevel(int level);
    int Level();

private:
    bool Take() override { return m_ended; }
    void ApplyLevel();

    pid_t m_host = 0; ///< the host's number for the thread while it runs
    int m_level;      ///< as asked for
    int m_hostLevel;  ///< what the host was asked for, by inheritance at first
    bool m_ended = false;
};

} // namespace kel::platform
