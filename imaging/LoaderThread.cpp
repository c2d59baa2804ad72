#include "imaging/LoadQueue.h"
#include "imaging/LzwScan.h"
#include "imaging/Prescaling.h"
#include "imaging/ToolkitControl.h"
#include "runtime/Lasting.h"

#include <kelcore/file.h>

#include <atomic>
#include <new>
#include <optional>
#include <utility>

namespace kel {
namespace {

constexpr double kPrescaleLimit = 0.9;
constexpr unsigned long kLookAgainAfter = 50; // milliseconds

struct Notifications {
    Section section;
    bool stopped = false;
};

Lasting<LoadQueue> g_loads;
Lasting<Notifications> g_notifications;
XPDibLoaderThread* g_loader = nullptr; // touched by whoever may start it
std::atomic<HANDLE> g_running{nullptr};

// What tells that the system has ended the loader in the middle of a load, as Windows does when the process ends.
class RunningMark {
public:
    RunningMark() {
        HANDLE thread = nullptr;
        const HANDLE process = GetCurrentProcess();
        if (DuplicateHandle(process, GetCurrentThread(), process, &thread, /*access*/ 0, /*inherit*/ FALSE,
                            DUPLICATE_SAME_ACCESS))
            g_running = thread;
    }
    RunningMark(const RunningMark&) = delete;
    RunningMark& operator=(const RunningMark&) = delete;
    ~RunningMark() {
        if (const HANDLE thread = g_running.exchange(nullptr))
            CloseHandle(thread);
    }
};

bool WasEndedBySystem() {
    const HANDLE thread = g_running;
    return thread && WaitForSingleObject(thread, 0) == WAIT_OBJECT_0;
}

// With the library: what waits is dropped, what runs is waited for.
struct Ending {
    ~Ending() {
        Loads().DropWaiting();
        while (g_loader && !g_loader->waitForEnd(kLookAgainAfter))
            if (WasEndedBySystem())
                return; // it will never tell; its object stays behind
        delete std::exchange(g_loader, nullptr);
    }
};

const Ending g_ending;

// The record is the loader's while it is pending; a copy made meanwhile shares what becomes of it.
void Load(const LoadRequest& request) {
    if (IsRefusedForLzw(request.path))
        throw XPDib::XP_LzwRefused;
    toolkit::IControl* const control = request.record->control;
    LoadPicture(control, request.path);
    if (!IsRectEmpty(&request.rectangle))
        PrescaleToFit(control, request.rectangle, XSize<double>(1.0, 1.0), kPrescaleLimit);
    // Last, so that a load that fails leaves none.
    Loads().SetFileName(File::GetBasename(request.path, WideString()));
}

using Failure = std::optional<XPDib::XPException>;

Failure TryLoad(const LoadRequest& request) noexcept {
    try {
        Load(request);
        return std::nullopt;
    } catch (XPDib::XPException code) {
        return code;
    } catch (...) {
        return XPDib::XP_Failed;
    }
}

void Notify(const LoadRequest& request, Failure failure) {
    if (!request.notifier)
        return;
    const Section::Hold hold((*g_notifications).section);
    if ((*g_notifications).stopped)
        return;
    if (failure)
        request.notifier->OnBitmapLoadFailed(request.path, request.picture, *failure, request.userValue);
    else
        request.notifier->OnBitmapLoaded(request.path, request.picture, request.userValue);
}

void TryNotify(const LoadRequest& request, Failure failure) noexcept {
    try {
        Notify(request, failure);
    } catch (...) { // NOLINT(bugprone-empty-catch): nobody is left to be told
    }
}

bool StartedNow(XPDibLoaderThread& loader) {
    if (loader.start(Thread::Normal))
        return true;
    // The last run has found the queue empty, but has not returned yet.
    return loader.waitForEnd(INFINITE) && loader.start(Thread::Normal);
}

} // namespace

LoadQueue& Loads() {
    return *g_loads;
}

void StartLoader() {
    if (!g_loader)
        g_loader = new (std::nothrow) XPDibLoaderThread;
    if (g_loader && StartedNow(*g_loader))
        return;
    delete std::exchange(g_loader, nullptr);
    Loads().LoaderFailed();
}

} // namespace kel

XPDibLoaderThread::~XPDibLoaderThread() {
    waitForEnd(INFINITE);
}

void XPDibLoaderThread::run() {
    const kel::RunningMark mark;
    while (const kel::LoadRequest* const request = kel::Loads().Next()) {
        const kel::Failure failure = kel::TryLoad(*request);
        kel::TryNotify(kel::Loads().Finish(), failure);
    }
}

void XPDib::StopLoadBitmapDeferredNotifier() {
    const kel::Section::Hold hold((*kel::g_notifications).section);
    (*kel::g_notifications).stopped = true;
}
