#include <kelcore/runtime/timers.h>

namespace {

void CALLBACK CallTarget(UINT id, UINT, DWORD_PTR target, DWORD_PTR, DWORD_PTR) {
    reinterpret_cast<ITimerTarget*>(target)->OnTimer(id);
}

} // namespace

unsigned int KelSetTimer(unsigned int resolution, unsigned int delay, ITimerTarget* target, bool periodic) {
    return timeSetEvent(delay, resolution, &CallTarget, reinterpret_cast<DWORD_PTR>(target),
                        periodic ? TIME_PERIODIC : TIME_ONESHOT);
}

void KelKillTimer(unsigned int id) {
    timeKillEvent(id);
}
