#pragma once

/// @file
/// Loading pictures on the library's loader thread.

#include <kelcore/imaging/picture.h>
#include <kelcore/runtime/threads.h>

/// Is told how deferred loads end. Clients implement it.
///
/// It is called on the loader thread, for one load at a time, in the order of the requests. It may destroy the picture,
/// assign to it, load anew, and stop notifications; it is not called for a picture object that was destroyed, or given
/// another picture, while its load was pending. The path lives for the call only. An exception that leaves it is
/// dropped.
class KELCORE_API LoadBitmapDeferredNotifier {
public:
    /// The picture is loaded.
    virtual void OnBitmapLoaded(const WideString& path, XPDib* picture, unsigned int userValue) = 0;
    /// The picture could not be loaded. It holds what the toolkit left: nothing, but for a file that was refused before
    /// it was opened and for prescaling that failed.
    virtual void OnBitmapLoadFailed(const WideString& path, XPDib* picture, XPDib::XPException code,
                                    unsigned int userValue) = 0;

protected:
    ~LoadBitmapDeferredNotifier() = default;
};

/// The loader: serves all requests that are queued, then ends. The library has one and starts it when it is needed; it
/// waits for it when it is unloaded.
class KELCORE_API XPDibLoaderThread : public Thread {
public:
    /// Waits until no load is running.
    ~XPDibLoaderThread() override;
    /// Serves requests until there are none left.
    void run() override;
};
