#include <kelcore/gdi/imagelists.h>

#include <memory>
#include <utility>

namespace {

// An owner for what @p make returns, which is called once the owner is there; null if that is nothing.
template <class Make>
ImageList* Owned(Make make) {
    auto owner = std::make_unique<ImageList>();
    owner->Attach(make());
    return owner->m_hImageList != nullptr ? owner.release() : nullptr;
}

} // namespace

ImageList::ImageList() : m_hImageList(nullptr) {}

ImageList::~ImageList() {
    Destroy();
}

void ImageList::Attach(HIMAGELIST list) {
    Destroy();
    m_hImageList = list;
}

void ImageList::Destroy() {
    if (m_hImageList != nullptr)
        ImageList_Destroy(std::exchange(m_hImageList, nullptr));
}

bool ImageList::Create(int cx, int cy, unsigned int flags, int initial, int grow) {
    Attach(ImageList_Create(cx, cy, flags, initial, grow));
    return m_hImageList != nullptr;
}

bool ImageList::Create(const ImageList& first, int firstIndex, const ImageList& second, int secondIndex, int dx,
                       int dy) {
    Attach(ImageList_Merge(first.m_hImageList, firstIndex, second.m_hImageList, secondIndex, dx, dy));
    return m_hImageList != nullptr;
}

bool ImageList::DrawIndirect(IMAGELISTDRAWPARAMS& parameters) {
    parameters.cbSize = sizeof parameters;
    parameters.himl = m_hImageList;
    return ImageList_DrawIndirect(&parameters) != 0;
}

ImageList* ImageList::Duplicate() {
    return Owned([this] { return ImageList_Duplicate(m_hImageList); });
}

ImageList* ImageList::Merge(int index, const ImageList& other, int otherIndex, int dx, int dy) {
    return Owned([&] { return ImageList_Merge(m_hImageList, index, other.m_hImageList, otherIndex, dx, dy); });
}

SIZE ImageList::GetIconSize() {
    int cx = 0, cy = 0;
    if (!ImageList_GetIconSize(m_hImageList, &cx, &cy))
        return {0, 0};
    return {cx, cy};
}

bool ImageList::DragEnter(HWND window, const POINT& position) {
    return ImageList_DragEnter(window, position.x, position.y) != 0;
}

bool ImageList::DragLeave(HWND window) {
    return ImageList_DragLeave(window) != 0;
}
