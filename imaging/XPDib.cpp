#include <kelcore/imaging/picture.h>

#include "imaging/Blocks.h"
#include "imaging/LoadQueue.h"
#include "imaging/ToolkitControl.h"

#include <new>

XPDib::XPDib() : m_pRef(new XPDibRef) {}

// The copy has a count of its own, which starts at 1. NOLINTNEXTLINE(bugprone-copy-constructor-init)
XPDib::XPDib(const XPDib& other)
    : IUnknown(), IBitmapData(), ISerializable(), KelUnknown(), BitmapBase(), m_pRef(other.m_pRef) {
    ++m_pRef->refCount;
}

XPDib& XPDib::operator=(const XPDib& other) {
    if (*this == other)
        return *this;
    ++other.m_pRef->refCount;
    LeaveRecord();
    m_pRef = other.m_pRef;
    return *this;
}

XPDib::~XPDib() {
    LeaveRecord();
}

bool XPDib::operator==(const XPDib& other) const {
    return m_pRef == other.m_pRef;
}

bool XPDib::operator!=(const XPDib& other) const {
    return !(*this == other);
}

// @return whether nobody has the record any more.
bool XPDib::EndShare() {
    if (m_pRef->loadPending)
        kel::Loads().Drop(*this, *m_pRef);
    return --m_pRef->refCount == 0;
}

void XPDib::LeaveRecord() {
    if (!EndShare())
        return;
    kel::ReleaseRecord(*m_pRef);
    delete m_pRef;
}

void XPDib::TakeNewRecord() {
    auto* const fresh = new XPDibRef;
    LeaveRecord();
    m_pRef = fresh;
}

// The toolkit owns the block if it takes it.
bool XPDib::TakeBlock(kel::OwnedBlock& block) {
    if (!InitImageXpress(m_pRef))
        return false;
    kel::CallToolkit(m_pRef->control, kel::toolkit::SetDibHandle, block.Get());
    block.Release();
    return true;
}

IBitmap* XPDib::GetClone() const {
    return new (std::nothrow) XPDib(*this);
}

bool XPDib::IsEqual(const IBitmap& other) const {
    const auto* const picture = dynamic_cast<const XPDib*>(&other);
    return picture && *picture == *this;
}

bool XPDib::AssignBitmap(const IBitmap& source) {
    if (const auto* const picture = dynamic_cast<const XPDib*>(&source)) {
        *this = *picture;
        return true;
    }
    kel::OwnedBlock block(source.GetDibClone());
    if (!block.Get())
        return false;
    SetEmpty();
    Detach();
    return TakeBlock(block);
}

WideString XPDib::GetFilename() const {
    return m_pRef->fileName;
}

bool XPDib::IsEmpty() const {
    if (m_pRef->loadPending || !m_pRef->control || !kel::PictureOf(m_pRef->control))
        return true;
    const Size size = GetDimension();
    return size.cx == 0 || size.cy == 0;
}

void XPDib::SetEmpty() {
    if (IsEmpty())
        return;
    if (m_pRef->refCount > 1)
        TakeNewRecord();
    else
        kel::CallToolkit(m_pRef->control, kel::toolkit::SetDibHandle, /*block*/ nullptr);
}

bool XPDib::Detach() {
    if (m_pRef->refCount < 2)
        return true;
    auto* const fresh = new XPDibRef;
    const XPDibRef& old = *m_pRef; // lives on with the others
    EndShare();
    m_pRef = fresh;
    // While it is the loader's, it has no picture to take.
    if (old.loadPending || !old.control || !kel::PictureOf(old.control))
        return true;
    if (!InitImageXpress(m_pRef))
        return false;
    kel::OwnedBlock copy(kel::AskToolkit(old.control, kel::toolkit::CopyDibHandle));
    return TakeBlock(copy);
}

bool XPDib::InitImageXpress(XPDibRef* record) {
    return kel::StartControl(*record);
}

bool XPDib::CreateBitmap(const Size& size, int bits) {
    SetEmpty();
    Detach();
    if (size.cx < 1 || size.cy < 1 || !InitImageXpress(m_pRef))
        return false;
    kel::CallToolkit(m_pRef->control, kel::toolkit::CreateBlank, static_cast<WORD>(size.cx), static_cast<WORD>(size.cy),
                     bits, 0);
    return kel::PictureOf(m_pRef->control) != nullptr;
}
