#include "platform/kernel/ThreadObject.h"

#include <kelcore/platform/threads.h>

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>

namespace kel::platform {
namespace {

thread_local std::shared_ptr<ThreadObject> t_current;

// A thread's level when it has no object: nobody has set one then.
int CurrentLevel() {
    return t_current ? t_current->Level() : THREAD_PRIORITY_NORMAL;
}

int NiceOffset(int level) {
    switch (level) {
    case THREAD_PRIORITY_IDLE:
        return 19;
    case THREAD_PRIORITY_TIME_CRITICAL:
        return -15;
    default:
        return -5 * level;
    }
}

// Linux keeps nice values by thread. A refusal is no error: the thread runs on as before.
void SetNice(pid_t thread, int level) {
    static const int ofProcess = getpriority(PRIO_PROCESS, static_cast<id_t>(getpid()));
    setpriority(PRIO_PROCESS, static_cast<id_t>(thread), std::clamp(ofProcess + NiceOffset(level), -20, 19));
}

} // namespace

void RunAtPriority(int level) {
    SetNice(gettid(), level);
}

std::shared_ptr<ThreadObject> ThreadObject::Current() {
    if (!t_current) {
        const auto thread = std::make_shared<ThreadObject>();
        thread->Begin(thread);
    }
    return t_current;
}

ThreadObject::ThreadObject() : Waitable(kKind), m_level(THREAD_PRIORITY_NORMAL), m_hostLevel(CurrentLevel()) {}

void ThreadObject::Begin(std::shared_ptr<ThreadObject> self) {
    t_current = std::move(self);
    const std::lock_guard guard(m_mutex);
    m_host = gettid();
    ApplyLevel();
}

void ThreadObject::End() {
    const std::lock_guard guard(m_mutex);
    m_host = 0; // from now on the number may be another thread's
    m_ended = true;
    m_signalled.notify_all();
}

void ThreadObject::SetLevel(int level) {
    const std::lock_guard guard(m_mutex);
    m_level = level;
    ApplyLevel();
}

int ThreadObject::Level() {
    const std::lock_guard guard(m_mutex);
    return m_level;
}

// A thread that has not begun yet does this when it begins.
void ThreadObject::ApplyLevel() {
    if (m_host == 0 || m_level == m_hostLevel)
        return;
    SetNice(m_host, m_level);
    m_hostLevel = m_level;
}

} // namespace kel::platform
