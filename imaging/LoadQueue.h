#pragma once

#include "imaging/PictureRecord.h"

#include <kelcore/imaging/loading.h>

#include <list>

/// @file
/// The deferred loads that wait, and the one that is served.
namespace kel {

/// One call of LoadBitmapDeferred. It works on the record: the picture object is a name that is passed on.
struct LoadRequest {
    XPDib* picture;
    PictureRecord* record;
    WideString path;
    Rect rectangle; ///< what to prescale to; empty for not
    unsigned int userValue;
    LoadBitmapDeferredNotifier* notifier; ///< null when nobody is, or may be, told
};

/// A critical section, and the hold on one.
class Section {
public:
    Section() { InitializeCriticalSection(&m_section); }
    Section(const Section&) = delete;
    Section& operator=(const Section&) = delete;
    ~Section() { DeleteCriticalSection(&m_section); }

    class Hold {
    public:
        explicit Hold(Section& section) : m_held(section.m_section) { EnterCriticalSection(&m_held); }
        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;
        ~Hold() { LeaveCriticalSection(&m_held); }

    private:
        CRITICAL_SECTION& m_held;
    };

private:
    CRITICAL_SECTION m_section;
};

/// First in, first out. A record is marked as pending as long as a request for it waits or is served. Every member may
/// be called from any thread; those of the loader from that thread alone.
class LoadQueue {
public:
    /// Queues the one request in @p request, which is empty afterwards.
    /// @return whether the loader has ended and the caller has to start it.
    bool Append(std::list<LoadRequest>& request);
    /// The loader that was to be started could not be.
    void LoaderFailed();
    /// Clears a record's file name, which the loader may be about to set.
    void ClearFileName(PictureRecord& record);

    /// Gives up the requests that @p picture made for the record it leaves: those that wait are dropped, and of the one
    /// that is served nobody is told. The record stays pending while others are left.
    void Drop(const XPDib& picture, PictureRecord& record);
    /// Gives up all requests for a record. It stays pending only while one is served.
    void DropAll(PictureRecord& record);
    /// Gives up everything that waits.
    void DropWaiting();

    /// @name The loader's
    /// @{

    /// Begins to serve the first request.
    /// @return null when there is none: the loader has ended, and the next Append will say so.
    const LoadRequest* Next();
    /// Names the record that is served.
    void SetFileName(const WideString& name);
    /// Ends serving. Neither record nor picture may be touched from now on.
    /// @return the request, to be passed on to its notifier.
    LoadRequest Finish();
    /// @}

private:
    template <class Matches>
    void DropMatching(PictureRecord& record, Matches matches);
    void Mark(PictureRecord& record);

    Section m_section;
    std::list<LoadRequest> m_waiting;
    std::list<LoadRequest> m_served; // one at most
    bool m_loading = false;          // whether a loader will look for more
};

/// The library's queue.
LoadQueue& Loads();

/// Starts the loader thread, as Append asks for it.
void StartLoader();

} // namespace kel
