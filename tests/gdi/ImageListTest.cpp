#include "tests/gdi/Canvas.h"

#include <memory>

namespace {

constexpr COLORREF kRed = RGB(255, 0, 0), kGreen = RGB(0, 255, 0), kBehind = RGB(1, 2, 3);

bool IsList(HIMAGELIST list) {
    int cx = 0, cy = 0;
    return ImageList_GetIconSize(list, &cx, &cy) != 0;
}

bool Fill(ImageList& list, COLORREF colour) {
    Canvas image(8, 8);
    image.dc.FillSolidRect(0, 0, 8, 8, colour);
    SelectObject(image.dc.m_hDC, image.previous);
    return list.Create(8, 8, ILC_COLOR24 | ILC_MASK, 1, 1) &&
           ImageList_AddMasked(list.m_hImageList, image.section.handle, kBehind) == 0;
}

} // namespace

TEST_CASE("copies and merged lists are lists of their own") {
    ImageList red, green, both;
    REQUIRE((Fill(red, kRed) && Fill(green, kGreen)));
    CHECK((red.GetIconSize().cx == 8 && red.GetIconSize().cy == 8));
    const std::unique_ptr<ImageList> copy(red.Duplicate()), merged(red.Merge(0, green, 0, 4, 0));
    REQUIRE((copy && merged && both.Create(red, 0, green, 0, 4, 0)));
    for (ImageList* list : {&both, merged.get()}) {
        Canvas canvas(16, 16);
        canvas.dc.FillSolidRect(0, 0, 16, 16, kBehind);
        IMAGELISTDRAWPARAMS parameters = {};
        parameters.cbSize = 5;
        parameters.himl = red.m_hImageList;
        parameters.hdcDst = canvas.dc.m_hDC;
        parameters.rgbBk = CLR_NONE;
        parameters.fStyle = ILD_TRANSPARENT;
        CHECK(list->DrawIndirect(parameters));
        CHECK((parameters.cbSize == sizeof parameters && parameters.himl == list->m_hImageList));
        CHECK((canvas.At(2, 2) == kRed && canvas.At(5, 2) == kGreen && canvas.At(11, 7) == kGreen));
        CHECK((canvas.At(12, 2) == kBehind && canvas.At(2, 8) == kBehind));
    }
    const HIMAGELIST kept = copy->m_hImageList, gone = red.m_hImageList;
    red.Destroy();
    CHECK((!IsList(gone) && IsList(kept) && ImageList_GetImageCount(kept) == 1));
    both.Attach(ImageList_Create(4, 4, ILC_COLOR32, 1, 1));
    const HIMAGELIST replaced = both.m_hImageList;
    CHECK_FALSE(both.Create(0, 0, ILC_COLOR32, 1, 1));
    CHECK((both.m_hImageList == nullptr && !IsList(replaced)));
}

TEST_CASE("without a list, or when the system refuses, there is nothing") {
    ImageList none;
    IMAGELISTDRAWPARAMS parameters = {};
    CHECK((none.GetIconSize().cx == 0 && none.GetIconSize().cy == 0 && !none.DrawIndirect(parameters)));
    CHECK((none.Duplicate() == nullptr && none.Merge(0, none, 0, 0, 0) == nullptr));
    kel::test::WithEachCallFailing(ERROR_NOT_ENOUGH_MEMORY, [] {
        ImageList list, merged;
        const bool filled = Fill(list, kRed);
        const std::unique_ptr<ImageList> copy(list.Duplicate());
        const bool created = merged.Create(list, 0, list, 0, 1, 1);
        CHECK(((filled && copy && created) || kel::test::HasCallFailed()));
        CHECK((merged.m_hImageList != nullptr) == created);
    });
}

TEST_CASE("a dragged image enters and leaves the screen") {
    ImageList list;
    REQUIRE((Fill(list, kRed) && ImageList_BeginDrag(list.m_hImageList, 0, 0, 0)));
    CHECK((ImageList::DragEnter(nullptr, {5, 5}) && ImageList::DragLeave(nullptr)));
    ImageList_EndDrag();
}
