#include "imaging/LoadQueue.h"

#include <algorithm>
#include <utility>

namespace kel {
namespace {

bool HasRequestFor(const std::list<LoadRequest>& requests, const PictureRecord& record) {
    return std::any_of(requests.begin(), requests.end(),
                       [&](const LoadRequest& request) { return request.record == &record; });
}

} // namespace

bool LoadQueue::Append(std::list<LoadRequest>& request) {
    const Section::Hold hold(m_section);
    request.front().record->loadPending = true;
    m_waiting.splice(m_waiting.end(), request);
    return !std::exchange(m_loading, true);
}

void LoadQueue::LoaderFailed() {
    const Section::Hold hold(m_section);
    m_loading = false;
}

void LoadQueue::ClearFileName(PictureRecord& record) {
    const Section::Hold hold(m_section);
    record.fileName.clear();
}

// Whoever waits for the mark may end the record at once: it is set last.
void LoadQueue::Mark(PictureRecord& record) {
    record.loadPending = HasRequestFor(m_waiting, record) || HasRequestFor(m_served, record);
}

template <class Matches>
void LoadQueue::DropMatching(PictureRecord& record, Matches matches) {
    std::list<LoadRequest> dropped; // freed outside the lock
    const Section::Hold hold(m_section);
    for (auto next = m_waiting.begin(); next != m_waiting.end();) {
        const auto request = next++;
        if (matches(*request))
            dropped.splice(dropped.end(), m_waiting, request);
    }
    for (LoadRequest& request : m_served)
        if (matches(request))
            request.notifier = nullptr;
    Mark(record);
}

void LoadQueue::Drop(const XPDib& picture, PictureRecord& record) {
    DropMatching(record,
                 [&](const LoadRequest& request) { return request.picture == &picture && request.record == &record; });
}

void LoadQueue::DropAll(PictureRecord& record) {
    DropMatching(record, [&](const LoadRequest& request) { return request.record == &record; });
}

void LoadQueue::DropWaiting() {
    std::list<LoadRequest> dropped;
    const Section::Hold hold(m_section);
    dropped.swap(m_waiting);
    for (const LoadRequest& request : dropped)
        Mark(*request.record);
}

const LoadRequest* LoadQueue::Next() {
    const Section::Hold hold(m_section);
    if (m_waiting.empty()) {
        m_loading = false;
        return nullptr;
    }
    m_served.splice(m_served.end(), m_waiting, m_waiting.begin());
    LoadRequest& request = m_served.front();
    request.record->fileName.clear(); // an earlier load of the same record may have set it
    return &request;
}

void LoadQueue::SetFileName(const WideString& name) {
    const Section::Hold hold(m_section);
    m_served.front().record->fileName = name;
}

LoadRequest LoadQueue::Finish() {
    const Section::Hold hold(m_section);
    LoadRequest request = std::move(m_served.front());
    m_served.clear();
    Mark(*request.record);
    return request;
}

} // namespace kel
