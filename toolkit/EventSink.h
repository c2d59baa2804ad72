#pragma once

#include <kelcore/imaging/toolkit.h>

namespace kel::toolkit {

/// The event sink that a control is connected to, held by a reference; or none. This toolkit has no window and nothing
/// to tell: pictures are complete when their operations return, so no event is ever fired.
class EventSink {
public:
    EventSink() = default;
    EventSink(const EventSink&) = delete;
    EventSink& operator=(const EventSink&) = delete;
    ~EventSink() { Drop(); }

    /// Connects a sink that answers kEventInterface. @return the number of the connection; 0 if it does not.
    DWORD Connect(IUnknown* sink);
    /// Lets go of the sink if @p cookie is the number of its connection.
    void Disconnect(DWORD cookie);

private:
    void Drop();

    IUnknown* m_sink = nullptr;
    DWORD m_cookie = 0;
};

} // namespace kel::toolkit
