#include "Drawing.h"

namespace {

const COLORREF kBack = RGB(32, 64, 96);

/// A surface of 8 x 4 pixels to draw on.
struct Canvas {
    Section section{8, 4, 32};
    MemoryContext dc{section.handle};

    void Clear() {
        const HBRUSH brush = CreateSolidBrush(kBack);
        const RECT all = {0, 0, 8, 4};
        FillRect(dc, &all, brush);
        DeleteObject(brush);
    }

    // A letter a pixel of the top left corner, two rows of three: '.' for the background, the names below, '?'.
    std::string Text() {
        const std::pair<COLORREF, char> names[] = {{kBack, '.'},
                                                   {RGB(255, 0, 0), 'r'},
                                                   {RGB(0, 255, 0), 'g'},
                                                   {RGB(0, 0, 255), 'b'},
                                                   {RGB(255, 255, 0), 'y'},
                                                   {RGB(0, 0, 0), 'k'},
                                                   {RGB(255, 255, 255), 'w'},
                                                   {RGB(255, 0, 255), 'm'}};
        std::string text;
        for (int i = 0; i < 6; ++i) {
            char name = '?';
            for (const auto& [colour, letter] : names)
                if (GetPixel(dc, i % 3, i / 3) == colour)
                    name = letter;
            text += (i == 3 ? std::string("/") : std::string()) + name;
        }
        return text;
    }

    std::string Of(HIMAGELIST list, int index, UINT style = ILD_NORMAL, COLORREF back = CLR_DEFAULT, int x = 0) {
        Clear();
        return ImageList_DrawEx(list, index, dc, x, 0, 0, 0, back, CLR_DEFAULT, style) ? Text() : "fails";
    }
};

/// Two images of 2 x 2 pixels: red, green, blue, yellow, and the same in white and black. The masks hide the first and
/// last pixel of the one, the two others of the other.
struct Images {
    Section image{4, 2, 24};
    HBITMAP mask;

    Images() {
        const MemoryContext dc(image.handle);
        const COLORREF colours[2][4] = {{RGB(255, 0, 0), RGB(0, 255, 0), RGB(255, 255, 255), 0},
                                        {RGB(0, 0, 255), RGB(255, 255, 0), 0, RGB(255, 255, 255)}};
        for (int i = 0; i < 8; ++i)
            SetPixel(dc, i % 4, i / 4, colours[i / 4][i % 4]);
        const BYTE bits[] = {0x90, 0, 0x60, 0};
        mask = CreateBitmap(4, 2, 1, 1, bits);
    }
    ~Images() { DeleteObject(mask); }
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
        CHECK((canvas.Of(list, 0) == ".g./b.." && canvas.Of(list, 1, ILD_TRANSPARENT, CLR_NONE, 1) == ".w./..w"));
        CHECK((canvas.Of(list, 0, ILD_NORMAL, RGB(255, 0, 255)) == "mg./bm."));
        CHECK((canvas.Of(list, 0, ILD_TRANSPARENT, RGB(255, 0, 255)) == ".g./b.."));
        CHECK((ImageList_SetBkColor(list, RGB(0, 255, 0)) == CLR_NONE && canvas.Of(list, 0) == "gg./bg."));
        CHECK((ImageList_GetBkColor(list) == RGB(0, 255, 0) && canvas.Of(list, 0, ILD_NORMAL, CLR_NONE) == ".g./b.."));
        CHECK((ImageList_SetOverlayImage(list, 1, 15) && !ImageList_SetOverlayImage(list, 1, 16)));
        CHECK(canvas.Of(list, 0, ILD_TRANSPARENT | INDEXTOOVERLAYMASK(15)) == "wg./bw.");
    }
    // With alpha a pixel is as opaque as it says.
    const Section clear(2, 2, 32);
    const std::uint32_t pixels[] = {0xFF0000FF, 0x00FFFFFF, 0xFFFFFF00, 0xFF00FF00};
    std::memcpy(clear.bytes, pixels, sizeof pixels);
    const List shaded(ILC_COLOR32 | ILC_MASK);
    CHECK((ImageList_Add(shaded, clear.handle, nullptr) == 0 && canvas.Of(shaded, 0) == "yg./b.."));
    const List plain(ILC_COLOR24);
    CHECK((ImageList_Add(plain, images.image.handle, nullptr) == 0 && canvas.Of(plain, 0) == "rg./by."));
    IMAGELISTDRAWPARAMS wanted = {};
    wanted.cbSize = sizeof wanted;
    wanted.himl = plain;
    wanted.hdcDst = canvas.dc;
    wanted.cx = wanted.cy = 1;
    wanted.xBitmap = 1;
    wanted.fStyle = ILD_ROP;
    wanted.dwRop = NOTSRCCOPY;
    canvas.Clear();
    CHECK((ImageList_DrawIndirect(&wanted) && canvas.Text() == "m../..."));
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
    CHECK(ImageList_AddMasked(list, images.image.handle, RGB(0, 255, 0)) == 2);
    CHECK(canvas.Of(list, 2) == "r../by.");
    Images fresh;
    CHECK((ImageList_AddMasked(list, fresh.image.handle, CLR_DEFAULT) == 4 && canvas.Of(list, 4) == ".g./by."));
    CHECK((ImageList_Replace(list, 0, fresh.image.handle, images.mask) &&
           !ImageList_Replace(list, 60, images.mask, nullptr)));
    CHECK((ImageList_Remove(list, 1) && ImageList_GetImageCount(list) == 5 && canvas.Of(list, 3) == ".g./by."));
    CHECK((!ImageList_Remove(list, 5) && ImageList_Remove(list, -1) && ImageList_GetImageCount(list) == 0));
    CHECK((ImageList_Add(list, nullptr, nullptr) == -1 && ImageList_Remove(list, -1) && !ImageList_Remove(list, 0)));
    CHECK((ImageList_SetImageCount(list, 3) && ImageList_GetImageCount(list) == 3 && canvas.Of(list, 2) == "kk./kk."));
    int cx = 0, cy = 0;
    CHECK((ImageList_GetIconSize(list, &cx, &cy) && cx == 2 && cy == 2 && !ImageList_GetIconSize(list, nullptr, &cy)));
    CHECK((ImageList_SetIconSize(list, 3, 1) && ImageList_GetImageCount(list) == 0));
    CHECK((ImageList_GetIconSize(list, &cx, &cy) && cx == 3 && cy == 1));
    CHECK((ImageList_Create(0, 2, ILC_COLOR, 1, 1) == nullptr && ImageList_Create(2, -1, ILC_COLOR, 1, 1) == nullptr));
    CHECK((!ImageList_Destroy(nullptr) && ImageList_GetImageCount(nullptr) == 0 && !ImageList_Duplicate(nullptr)));
}

TEST_CASE("lists are merged and duplicated, and own what they hold") {
    Images images;
    Canvas canvas;
    const List list(ILC_COLOR24 | ILC_MASK);
    ImageList_Add(list, images.image.handle, images.mask);
    const struct {
        int dx, dy, cx, cy;
        const char* shown;
    } rows[] = {{0, 0, 2, 2, "wg./bw."}, {1, 1, 3, 3, ".g./bw."}, {-1, 0, 3, 2, "w.g/.w."}, {3, 0, 5, 2, ".g./b.."}};
    for (const auto& row : rows) {
        CAPTURE(row.dx);
        const List merged(ImageList_Merge(list, 0, list, 1, row.dx, row.dy));
        int cx = 0, cy = 0;
        CHECK((ImageList_GetIconSize(merged, &cx, &cy) && cx == row.cx && cy == row.cy));
        CHECK((ImageList_GetImageCount(merged) == 1 && canvas.Of(merged, 0) == row.shown));
    }
    CHECK(ImageList_Merge(list, 0, nullptr, 0, 0, 0) == nullptr);
    ImageList_SetBkColor(list, RGB(255, 0, 255));
    const List copy(ImageList_Duplicate(list));
    ImageList_Remove(list, -1);
    CHECK((ImageList_GetImageCount(copy) == 2 && canvas.Of(copy, 0) == ".g./b.."));
    IMAGEINFO info = {};
    BITMAP bitmap = {};
    CHECK((ImageList_GetImageInfo(copy, 1, &info) && info.rcImage.right - info.rcImage.left == 2));
    CHECK((GetObjectA(info.hbmImage, sizeof bitmap, &bitmap) && bitmap.bmBitsPixel == 24 && info.hbmMask));
    CHECK((!ImageList_GetImageInfo(copy, 2, &info) && !ImageList_GetImageInfo(copy, 0, nullptr)));
}

TEST_CASE("one image is dragged at a time, and leaves what was there") {
    Images images;
    const List list(ILC_COLOR24 | ILC_MASK);
    ImageList_Add(list, images.image.handle, images.mask);
    CHECK((!ImageList_DragMove(0, 0) && !ImageList_DragEnter(nullptr, 0, 0) && !ImageList_BeginDrag(list, 9, 0, 0)));
    REQUIRE(ImageList_BeginDrag(list, 0, 1, 1));
    CHECK((!ImageList_BeginDrag(list, 0, 0, 0) && !ImageList_DragShowNolock(FALSE)));
    const HDC screen = GetDC(nullptr);
    SetPixel(screen, 6, 5, kBack);
    CHECK((ImageList_DragEnter(nullptr, 6, 6) && GetPixel(screen, 6, 5) != kBack));
    CHECK((ImageList_DragMove(20, 20) && GetPixel(screen, 6, 5) == kBack && ImageList_DragMove(6, 6)));
    CHECK((ImageList_DragShowNolock(FALSE) && !ImageList_DragShowNolock(FALSE) && GetPixel(screen, 6, 5) == kBack));
    CHECK((ImageList_DragShowNolock(TRUE) && ImageList_DragLeave(nullptr) && GetPixel(screen, 6, 5) == kBack));
    ImageList_EndDrag();
    CHECK(!ImageList_DragMove(0, 0));
    ReleaseDC(nullptr, screen);
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
        ImageList_Draw(list, 0, canvas.dc, 0, 0, ILD_BLEND50);
        List(ImageList_Merge(list, 0, list, 0, 1, 1));
        if (ImageList_BeginDrag(list, 0, 0, 0)) {
            ImageList_DragEnter(nullptr, 0, 0);
            ImageList_DragLeave(nullptr);
        }
        ImageList_EndDrag();
    });
}
