#include "imaging/LoadQueue.h"

void XPDib::LoadBitmapDeferred(const WideString& path, LoadBitmapDeferredNotifier* notifier, const Rect& rectangle,
                               unsigned int userValue) {
    if (m_pRef->refCount > 1)
        TakeNewRecord();
    kel::Loads().ClearFileName(*m_pRef);
    if (!InitImageXpress(m_pRef))
        throw XP_Failed;
    std::list<kel::LoadRequest> request;
    request.push_back({this, m_pRef, path, rectangle, userValue, notifier});
    if (kel::Loads().Append(request))
        kel::StartLoader();
}

bool XPDib::IsLoadBitmapPending() const {
    return m_pRef->loadPending;
}
