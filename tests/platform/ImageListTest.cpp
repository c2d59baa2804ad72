#include "Sheet.h"

namespace {

const COLORREF kBack = RGB(32, 64, 96);

/// A surface to draw on.
struct Canvas : Sheet {
    Canvas() : Sheet(8, 4, kBack) {}

    std::string Of(HIMAGELIST list, int index, UINT style = ILD_NORMAL, COLORREF back = CLR_DEFAULT, int x = 0) {
        Clear();
        return ImageList_DrawEx(list, index, *this, x, 0, 0, 0, back, CLR_DEFAULT, style) ? Picture() : "fails";
    }
};

/// Two images of 2 x 2 pixels: red, green, blue, yellow, and the same in white and black. The masks hide the first and
/// last pixel of the one, the two others of the other.
struct Images {
    Section image{4, 2, 24};
    Owned<HBITMAP> mask{CreateBitmap(4, 2, 1, 1, "\x90\0\x60")};

    Images() {
        const MemoryContext dc(image.handle);
        const COLORREF colours[2][4] = {{kRed, kGreen, kWhite, 0}, {kBlue, kYellow, 0, kWhite}};
        for (int i = 0; i < 8; ++i)
            SetPixel(dc, i % 4, i / 4, colours[i / 4][i % 4]);
    }
};

struct List {
    explicit List(UINT flags, int room = 1) : handle(ImageList_Create(2, 2, flags, room, 1)) {}
    explicit List(HIMAGELIST list) : handle(list) {}
    List(const List&) = delete;
    List& operator=(const List&) = delete;
    ~List() { ImageList_Destroy(handle); }
    operator HIMAGELIST() const { return handle; }

    HIMAGELIST handle;
};

} // namespace

TEST_CASE("images are drawn through their masks, on a colour, and under overlays") {
    Images images;
    Canvas canvas;
    for (const UINT depth : {ILC_COLOR8, ILC_COLOR24, ILC_COLOR32, ILC_COLORDDB}) {
        CAPTURE(depth);
        const List list(depth | ILC_MASK);
        CHECK((ImageList_Add(list, images.image.handle, images.mask) == 0 && ImageList_GetImageCount(list) == 2));
        CHECK((canvas.Of(list, 0) == ".G/B" && canvas.Of(list, 1, ILD_TRANSPARENT, CLR_NONE, 1) == ".W/..W"));
        CHECK((canvas.Of(list, 0, ILD_NORMAL, kMagenta) == "MG/BM"));
        CHECK((canvas.Of(list, 0, ILD_TRANSPARENT, kMagenta) == ".G/B"));
        CHECK((ImageList_SetBkColor(list, kGreen) == CLR_NONE && canvas.Of(list, 0) == "GG/BG"));
        CHECK((ImageList_GetBkColor(list) == kGreen && canvas.Of(list, 0, ILD_NORMAL, CLR_NONE) == ".G/B"));
        CHECK((ImageList_SetOverlayImage(list, 1, 15) && !ImageList_SetOverlayImage(list, 1, 16)));
        CHECK(canvas.Of(list, 0, ILD_TRANSPARENT | INDEXTOOVERLAYMASK(15)) == "WG/BW");
    }
    // With alpha a pixel is as opaque as it says.
    const Section clear(2, 2, 32);
    const std::uint32_t pixels[] = {0xFF0000FF, 0x00FFFFFF, 0xFFFFFF00, 0xFF00FF00};
    std::memcpy(clear.bytes, pixels, sizeof pixels);
    const List shaded(ILC_COLOR32 | ILC_MASK);
    CHECK((ImageList_Add(shaded, clear.handle, nullptr) == 0 && canvas.Of(shaded, 0) == "YG/B"));
    const List plain(ILC_COLOR24);
    CHECK((ImageList_Add(plain, images.image.handle, nullptr) == 0 && canvas.Of(plain, 0) == "RG/BY"));
    IMAGELISTDRAWPARAMS wanted = {};
    wanted.cbSize = sizeof wanted;
    wanted.himl = plain;
    wanted.hdcDst = canvas;
    wanted.cx = wanted.cy = 1;
    wanted.xBitmap = 1;
    wanted.fStyle = ILD_ROP;
    wanted.dwRop = NOTSRCCOPY;
    canvas.Clear();
    CHECK((ImageList_DrawIndirect(&wanted) && canvas.Picture() == "M"));
    for (const int wrong : {-1, 2}) {
        wanted.i = wrong;
        CHECK(!ImageList_DrawIndirect(&wanted));
    }
    CHECK((!ImageList_DrawIndirect(nullptr) && canvas.Of(nullptr, 0) == "fails"));
}

TEST_CASE("images are added, replaced and removed") {
    Images images;
    Canvas canvas;
    const List list(ILC_COLOR24 | ILC_MASK);
    CHECK(ImageList_Add(list, images.image.handle, images.mask) == 0);
    CHECK(ImageList_AddMasked(list, images.image.handle, kGreen) == 2);
    CHECK(canvas.Of(list, 2) == "R/BY");
    Images fresh;
    CHECK((ImageList_AddMasked(list, fresh.image.handle, CLR_DEFAULT) == 4 && canvas.Of(list, 4) == ".G/BY"));
    CHECK((ImageList_Replace(list, 0, fresh.image.handle, images.mask) &&
           !ImageList_Replace(list, 60, images.mask, nullptr)));
    CHECK((ImageList_Remove(list, 1) && ImageList_GetImageCount(list) == 5 && canvas.Of(list, 3) == ".G/BY"));
    CHECK((!ImageList_Remove(list, 5) && ImageList_Remove(list, -1) && ImageList_GetImageCount(list) == 0));
    CHECK((ImageList_Add(list, nullptr, nullptr) == -1 && ImageList_Remove(list, -1) && !ImageList_Remove(list, 0)));
    CHECK((ImageList_SetImageCount(list, 3) && ImageList_GetImageCount(list) == 3 && canvas.Of(list, 2) == "KK/KK"));
    int cx = 0, cy = 0;
    CHECK((ImageList_GetIconSize(list, &cx, &cy) && cx == 2 && cy == 2 && !ImageList_GetIconSize(list, nullptr, &cy)));
    CHECK((ImageList_SetIconSize(list, 3, 1) && ImageList_GetImageCount(list) == 0));
    CHECK((ImageList_GetIconSize(list, &cx, &cy) && cx == 3 && cy == 1));
    if (kel::test::FaultsAvailable()) { // other systems have limits of their own
        const List greedy(ImageList_Create(2, 2, ILC_COLOR24, 1, INT32_MAX));
        CHECK((ImageList_Add(greedy, Images().image.handle, nullptr) == 0 && ImageList_GetImageCount(greedy) == 2));
    }
    CHECK((ImageList_Create(0, 2, ILC_COLOR, 1, 1) == nullptr && ImageList_Create(2, -1, ILC_COLOR, 1, 1) == nullptr));
    CHECK((!ImageList_Destroy(nullptr) && ImageList_GetImageCount(nullptr) == 0 && !ImageList_Duplicate(nullptr)));
}

TEST_CASE("lists are merged and duplicated, and own what they hold") {
    Images images;
    Canvas canvas;
    const List list(ILC_COLOR24 | ILC_MASK);
    ImageList_Add(list, images.image.handle, images.mask);
    const std::tuple<int, int, int, int, const char*> rows[] = {
        {0, 0, 2, 2, "WG/BW"}, {1, 1, 3, 3, ".G/BW/..W"}, {-1, 0, 3, 2, "W.G/.W"}, {3, 0, 5, 2, ".G.W/B...W"}};
    for (const auto& [dx, dy, width, height, shown] : rows) {
        CAPTURE(dx);
        const List merged(ImageList_Merge(list, 0, list, 1, dx, dy));
        int cx = 0, cy = 0;
        CHECK((ImageList_GetIconSize(merged, &cx, &cy) && cx == width && cy == height));
        CHECK((ImageList_GetImageCount(merged) == 1 && canvas.Of(merged, 0) == shown));
    }
    CHECK(ImageList_Merge(list, 0, nullptr, 0, 0, 0) == nullptr);
    if (kel::test::FaultsAvailable()) { // other systems have limits of their own
        for (const int distance : {INT32_MAX, INT32_MIN, INT32_MAX - 1})
            CHECK((!ImageList_Merge(list, 0, list, 1, distance, 0) && !ImageList_Merge(list, 0, list, 1, 0, distance)));
    }
    ImageList_SetBkColor(list, kMagenta);
    const List copy(ImageList_Duplicate(list));
    ImageList_Remove(list, -1);
    CHECK((ImageList_GetImageCount(copy) == 2 && canvas.Of(copy, 0) == ".G/B"));
    IMAGEINFO info = {};
    CHECK((ImageList_GetImageInfo(copy, 1, &info) && info.rcImage.right - info.rcImage.left == 2));
    CHECK((Told<BITMAP>(info.hbmImage).bmBitsPixel == 24 && info.hbmMask));
    CHECK((!ImageList_GetImageInfo(copy, 2, &info) && !ImageList_GetImageInfo(copy, 0, nullptr)));
}

TEST_CASE("one image is dragged at a time, and leaves what was there") {
    Images images;
    const List list(ILC_COLOR24 | ILC_MASK);
    ImageList_Add(list, images.image.handle, images.mask);
    CHECK((!ImageList_DragMove(0, 0) && !ImageList_DragEnter(nullptr, 0, 0) && !ImageList_BeginDrag(list, 9, 0, 0)));
    REQUIRE(ImageList_BeginDrag(list, 0, 1, 1));
    CHECK((!ImageList_BeginDrag(list, 0, 0, 0) && !ImageList_DragShowNolock(FALSE)));
    const WindowContext screen;
    SetPixel(screen, 6, 5, kBack);
    CHECK((ImageList_DragEnter(nullptr, 6, 6) && GetPixel(screen, 6, 5) != kBack));
    CHECK((ImageList_DragMove(20, 20) && GetPixel(screen, 6, 5) == kBack && ImageList_DragMove(6, 6)));
    CHECK((ImageList_DragShowNolock(FALSE) && !ImageList_DragShowNolock(FALSE) && GetPixel(screen, 6, 5) == kBack));
    CHECK((ImageList_DragShowNolock(TRUE) && ImageList_DragLeave(nullptr) && GetPixel(screen, 6, 5) == kBack));
    ImageList_EndDrag();
    CHECK(!ImageList_DragMove(0, 0));
}

TEST_CASE("a failing call leaves a list as it was") {
    Images images;
    Canvas canvas;
    kel::test::WithEachCallFailing(ERROR_NOT_ENOUGH_MEMORY, [&] {
        const List list(ILC_COLOR32 | ILC_MASK);
        if (!list.handle)
            return;
        const int first = ImageList_Add(list, images.image.handle, images.mask);
        CHECK(ImageList_GetImageCount(list) == (first == 0 ? 2 : 0));
        if (first != 0)
            return;
        if (ImageList_AddMasked(list, images.image.handle, 0) < 0)
            CHECK(ImageList_GetImageCount(list) == 2);
        ImageList_Remove(list, 1);
        ImageList_Draw(list, 0, canvas, 0, 0, ILD_BLEND50);
        List(ImageList_Merge(list, 0, list, 0, 1, 1));
        if (ImageList_BeginDrag(list, 0, 0, 0)) {
            ImageList_DragEnter(nullptr, 0, 0);
            ImageList_DragLeave(nullptr);
        }
        ImageList_EndDrag();
    });
}
