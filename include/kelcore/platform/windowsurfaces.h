#pragma once

/// @file
/// Windows as surfaces in memory: nobody sees them and nothing covers them, but what is drawn into them stays and can
/// be looked at, by GetPixel and BitBlt or as a whole (windowpictures.h).
///
/// A top-level window has pixels of its own, 32 bits each; a child draws into those of its parent, within the parent's
/// client area. Messages are calls of a window's procedure, there is no queue: WM_PAINT comes from UpdateWindow alone.
/// The frame of a window is drawn, by WM_NCPAINT, as soon as it is shown or gets another size, and before WM_PAINT
/// where its parent has drawn over it.
///
/// Calls that are handed what is no window fail with ERROR_INVALID_WINDOW_HANDLE. A window is used by the thread that
/// made it: on other threads all calls but IsWindow fail with ERROR_ACCESS_DENIED. Coordinates of a child are those of
/// its parent's client area; top-level windows lie on the screen.

#include <kelcore/platform/devicecontexts.h>
#include <kelcore/platform/modules.h>

typedef std::intptr_t LONG_PTR;
typedef std::intptr_t LRESULT;
typedef WORD ATOM;
typedef struct HMENU__* HMENU;
typedef struct HICON__* HICON;
typedef HICON HCURSOR;
typedef LRESULT(CALLBACK* WNDPROC)(HWND window, UINT message, WPARAM wide, LPARAM data);

#define LOWORD(number) (static_cast<WORD>(static_cast<DWORD_PTR>(number) & 0xFFFF))
#define HIWORD(number) (static_cast<WORD>(static_cast<DWORD_PTR>(number) >> 16 & 0xFFFF))
#define MAKELONG(low, high)                                                                                            \
    (static_cast<LONG>(static_cast<WORD>(low) | static_cast<DWORD>(static_cast<WORD>(high)) << 16))
#define MAKELPARAM(low, high) (static_cast<LPARAM>(static_cast<DWORD>(MAKELONG(low, high))))

/// @name Styles of classes
/// Others are accepted and change nothing.
/// @{
#define CS_VREDRAW 0x0001     ///< another height of the client area makes all of it invalid
#define CS_HREDRAW 0x0002     ///< another width
#define CS_GLOBALCLASS 0x4000 ///< for windows of every module
/// @}

/// @name Styles of windows
/// Others are kept and change nothing.
/// @{
#define WS_OVERLAPPED 0x00000000L ///< a top-level window with a caption, whether WS_CAPTION is given or not
#define WS_MAXIMIZEBOX 0x00010000L
#define WS_MINIMIZEBOX 0x00020000L
#define WS_THICKFRAME 0x00040000L
#define WS_SYSMENU 0x00080000L
#define WS_DLGFRAME 0x00400000L
#define WS_BORDER 0x00800000L
#define WS_CAPTION 0x00C00000L
#define WS_CLIPCHILDREN 0x02000000L ///< drawing leaves the visible children out
#define WS_CLIPSIBLINGS 0x04000000L ///< drawing leaves the visible siblings above out
#define WS_DISABLED 0x08000000L
#define WS_VISIBLE 0x10000000L
#define WS_CHILD 0x40000000L
#define WS_POPUP 0x80000000L
#define WS_OVERLAPPEDWINDOW (WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MINIMIZEBOX | WS_MAXIMIZEBOX)
#define WS_POPUPWINDOW (WS_POPUP | WS_BORDER | WS_SYSMENU)
#define WS_EX_DLGMODALFRAME 0x00000001L
#define WS_EX_TOOLWINDOW 0x00000080L ///< a smaller caption
#define WS_EX_WINDOWEDGE 0x00000100L ///< set by the layer where the frame has a raised edge
#define WS_EX_CLIENTEDGE 0x00000200L
#define WS_EX_STATICEDGE 0x00020000L
/// @}

/// @name Messages that are sent
/// @{
#define WM_CREATE 0x0001
#define WM_DESTROY 0x0002
#define WM_MOVE 0x0003
#define WM_SIZE 0x0005
#define WM_PAINT 0x000F
#define WM_ERASEBKGND 0x0014
#define WM_SYSCOLORCHANGE 0x0015
#define WM_SHOWWINDOW 0x0018
#define WM_NCCREATE 0x0081
#define WM_NCDESTROY 0x0082
#define WM_NCPAINT 0x0085
#define WM_USER 0x0400
#define SIZE_RESTORED 0
/// @}

/// @name How ShowWindow shows, and SetWindowPos places
/// @{
#define SW_HIDE 0
#define SW_SHOWNORMAL 1
#define SW_SHOWNOACTIVATE 4
#define SW_SHOW 5
#define SW_SHOWNA 8
#define SWP_NOSIZE 0x0001
#define SWP_NOMOVE 0x0002
#define SWP_NOZORDER 0x0004
#define SWP_NOREDRAW 0x0008 ///< nothing becomes invalid, and the frame is not drawn
#define SWP_NOACTIVATE 0x0010
#define SWP_FRAMECHANGED 0x0020 ///< counts as a change of the size
#define SWP_SHOWWINDOW 0x0040
#define SWP_HIDEWINDOW 0x0080
#define SWP_NOOWNERZORDER 0x0200
#define HWND_TOP (static_cast<HWND>(nullptr))
#define HWND_BOTTOM (reinterpret_cast<HWND>(static_cast<std::intptr_t>(1)))
#define CW_USEDEFAULT (static_cast<int>(0x80000000u))
/// @}

/// @name What GetWindowLongPtrA knows
/// @{
#define GWLP_WNDPROC (-4)
#define GWL_STYLE (-16)
#define GWL_EXSTYLE (-20)
#define GWLP_USERDATA (-21)
/// @}

/// @name What GetSystemMetrics knows
/// Sizes in pixels: the screen's, and the classic ones of frames.
/// @{
#define SM_CXSCREEN 0
#define SM_CYSCREEN 1
#define SM_CYCAPTION 4 ///< 19, with the line below it
#define SM_CXBORDER 5  ///< 1
#define SM_CYBORDER 6
#define SM_CXFIXEDFRAME 7 ///< 3
#define SM_CYFIXEDFRAME 8
#define SM_CXDLGFRAME SM_CXFIXEDFRAME
#define SM_CYDLGFRAME SM_CYFIXEDFRAME
#define SM_CYMENU 15      ///< 19
#define SM_CXSIZEFRAME 32 ///< 4
#define SM_CYSIZEFRAME 33
#define SM_CXFRAME SM_CXSIZEFRAME
#define SM_CYFRAME SM_CYSIZEFRAME
#define SM_CXEDGE 45 ///< 2
#define SM_CYEDGE 46
#define SM_CYSMCAPTION 51 ///< 16
/// @}

typedef struct tagWNDCLASSA {
    UINT style;
    WNDPROC lpfnWndProc;
    int cbClsExtra; ///< not looked at
    int cbWndExtra;
    HINSTANCE hInstance; ///< null: the program
    HICON hIcon;
    HCURSOR hCursor;
    HBRUSH hbrBackground; ///< a brush, deleted with the class; 1 + a COLOR_ index; null: nothing is erased
    LPCSTR lpszMenuName;
    LPCSTR lpszClassName;
} WNDCLASSA, *PWNDCLASSA, *LPWNDCLASSA;

typedef struct tagWNDCLASSEXA {
    UINT cbSize; ///< the size of this record
    UINT style;
    WNDPROC lpfnWndProc;
    int cbClsExtra;
    int cbWndExtra;
    HINSTANCE hInstance;
    HICON hIcon;
    HCURSOR hCursor;
    HBRUSH hbrBackground;
    LPCSTR lpszMenuName;
    LPCSTR lpszClassName;
    HICON hIconSm;
} WNDCLASSEXA, *PWNDCLASSEXA, *LPWNDCLASSEXA;

/// What WM_NCCREATE and WM_CREATE point to.
typedef struct tagCREATESTRUCTA {
    LPVOID lpCreateParams;
    HINSTANCE hInstance;
    HMENU hMenu;
    HWND hwndParent;
    int cy;
    int cx;
    int y;
    int x;
    LONG style;
    LPCSTR lpszName;
    LPCSTR lpszClass;
    DWORD dwExStyle;
} CREATESTRUCTA, *LPCREATESTRUCTA;

/// What BeginPaint tells: 64 bytes on 32 bits.
typedef struct tagPAINTSTRUCT {
    HDC hdc;
    BOOL fErase;  ///< the background is still to be erased
    RECT rcPaint; ///< the smallest rectangle around what is to be painted
    BOOL fRestore;
    BOOL fIncUpdate;
    BYTE rgbReserved[32];
} PAINTSTRUCT, *PPAINTSTRUCT, *LPPAINTSTRUCT;

extern "C" {

/// @name Classes
/// @{

/// Registers a class by its name, of 1 to 255 bytes in which ASCII letters of both cases are the same.
/// @return a number that stands for the name; 0 with ERROR_INVALID_PARAMETER (no name or procedure, another size of the
///         record), ERROR_CLASS_ALREADY_EXISTS (of the same module) or ERROR_NOT_ENOUGH_MEMORY.
/// @{
KELPLATFORM_API ATOM WINAPI RegisterClassA(const WNDCLASSA* description);
KELPLATFORM_API ATOM WINAPI RegisterClassExA(const WNDCLASSEXA* description);
/// @}

/// Removes a class and deletes its brush.
/// @param name or the number that RegisterClassA returned, by MAKEINTRESOURCEA.
/// @return FALSE with ERROR_CLASS_DOES_NOT_EXIST, or ERROR_CLASS_HAS_WINDOWS while there are windows of it.
KELPLATFORM_API BOOL WINAPI UnregisterClassA(LPCSTR name, HINSTANCE instance);
/// @}

/// @name Windows
/// @{

/// Makes a window. Sends WM_NCCREATE, which refuses with 0, WM_CREATE, which refuses with -1, then WM_SIZE and WM_MOVE;
/// with WS_VISIBLE it is then shown.
/// @param name drawn in the caption; null for none.
/// @param x, y CW_USEDEFAULT in @p x stands for (0, 0).
/// @param width, height CW_USEDEFAULT in @p width stands for three quarters of the screen; sizes below 0 for 0. Numbers
///        beyond 2^20 are held there.
/// @param parent of a child, which dies with it; of another window, its owner, which GetParent tells for WS_POPUP. May
/// be
///        null for a window without WS_CHILD.
/// @param menu of a child, a number that is not looked at; no window has a menu.
/// @return null with ERROR_CANNOT_FIND_WND_CLASS, ERROR_TLW_WITH_WSCHILD (a child without a parent),
///         ERROR_NOT_ENOUGH_MEMORY, or when the procedure refused.
KELPLATFORM_API HWND WINAPI CreateWindowExA(DWORD exStyle, LPCSTR className, LPCSTR name, DWORD style, int x, int y,
                                            int width, int height, HWND parent, HMENU menu, HINSTANCE instance,
                                            LPVOID parameter);

/// Sends WM_DESTROY to the window and all its children, then WM_NCDESTROY, from the children up; owned windows go
/// first. Contexts that are still out draw nothing from then on and are given back as usual.
/// @return FALSE also for a window that is being destroyed.
KELPLATFORM_API BOOL WINAPI DestroyWindow(HWND window);

KELPLATFORM_API BOOL WINAPI IsWindow(HWND window);

/// The parent of a child, the owner of a WS_POPUP window. @return null if there is none; the last error stays then.
KELPLATFORM_API HWND WINAPI GetParent(HWND window);

/// A value of the window. @return 0 with ERROR_INVALID_INDEX for another @p index than those listed above.
KELPLATFORM_API LONG_PTR WINAPI GetWindowLongPtrA(HWND window, int index);

/// Sets GWLP_USERDATA or GWLP_WNDPROC. @return the previous value; 0 with ERROR_INVALID_INDEX for another.
KELPLATFORM_API LONG_PTR WINAPI SetWindowLongPtrA(HWND window, int index, LONG_PTR value);

/// Calls the window's procedure. @return its result.
KELPLATFORM_API LRESULT WINAPI SendMessageA(HWND window, UINT message, WPARAM wide, LPARAM data);

/// What a procedure does with messages that are none of its business: WM_NCCREATE agrees, WM_ERASEBKGND fills with the
/// brush of the class (1 if it has one), WM_PAINT paints nothing else, WM_NCPAINT draws the frame. @return 0 otherwise.
KELPLATFORM_API LRESULT WINAPI DefWindowProcA(HWND window, UINT message, WPARAM wide, LPARAM data);
/// @}

/// @name Places
/// @{

/// Shows or hides; sends WM_SHOWWINDOW when that is a change. A window that is shown is invalid as a whole, with all
/// its children; one that is hidden leaves its place in the parent invalid.
/// @return whether it was visible before, parents left aside.
KELPLATFORM_API BOOL WINAPI ShowWindow(HWND window, int how);

/// Whether it and all its parents are shown.
KELPLATFORM_API BOOL WINAPI IsWindowVisible(HWND window);

/// Moves, sizes, restacks, shows and hides, as far as the flags let it. Sends WM_MOVE and WM_SIZE after a change of the
/// client area's place or size.
///
/// What a window shows stays when it is sized, and what is new of the client area becomes invalid (all of it with
/// CS_HREDRAW or CS_VREDRAW). A child that is moved or restacked is painted anew, and so is what it leaves.
/// @param after a sibling that the window goes below, HWND_TOP or HWND_BOTTOM.
KELPLATFORM_API BOOL WINAPI SetWindowPos(HWND window, HWND after, int x, int y, int width, int height, UINT flags);

/// SetWindowPos to a place and a size; with @p repaint followed by UpdateWindow.
KELPLATFORM_API BOOL WINAPI MoveWindow(HWND window, int x, int y, int width, int height, BOOL repaint);

/// Stores the window's place on the screen.
KELPLATFORM_API BOOL WINAPI GetWindowRect(HWND window, LPRECT rect);

/// Stores (0, 0) and the size of the client area.
KELPLATFORM_API BOOL WINAPI GetClientRect(HWND window, LPRECT rect);

/// From the client area to the screen and back.
/// @{
KELPLATFORM_API BOOL WINAPI ClientToScreen(HWND window, LPPOINT point);
KELPLATFORM_API BOOL WINAPI ScreenToClient(HWND window, LPPOINT point);
/// @}

/// Grows the client area @p rect to the window it takes.
/// @param style as it is given: without WS_CAPTION there is none, in WS_OVERLAPPED either.
/// @param menu whether to add the height of a menu.
/// @{
KELPLATFORM_API BOOL WINAPI AdjustWindowRect(LPRECT rect, DWORD style, BOOL menu);
KELPLATFORM_API BOOL WINAPI AdjustWindowRectEx(LPRECT rect, DWORD style, BOOL menu, DWORD exStyle);
/// @}

/// @return 0 for another @p index than those listed above.
KELPLATFORM_API int WINAPI GetSystemMetrics(int index);
/// @}

/// @name Painting
/// The update region is what of the client area is to be painted. Rectangles and regions are in client coordinates.
/// @{

/// Adds a rectangle (null: all) to the update region, and to those of the children below it unless the window has
/// WS_CLIPCHILDREN. Does nothing to a window that is not visible.
/// @param erase the next BeginPaint erases the background.
/// @param window null, which means every window elsewhere, is refused.
KELPLATFORM_API BOOL WINAPI InvalidateRect(HWND window, const RECT* rect, BOOL erase);
KELPLATFORM_API BOOL WINAPI InvalidateRgn(HWND window, HRGN region, BOOL erase);

/// Takes a rectangle (null: all) out of the update region; an empty one is not erased any more.
KELPLATFORM_API BOOL WINAPI ValidateRect(HWND window, const RECT* rect);
KELPLATFORM_API BOOL WINAPI ValidateRgn(HWND window, HRGN region);

/// Stores the smallest rectangle around the update region.
/// @param rect may be null.
/// @param erase erases the background as BeginPaint does.
/// @return whether there is anything to paint.
KELPLATFORM_API BOOL WINAPI GetUpdateRect(HWND window, LPRECT rect, BOOL erase);

/// Makes @p region the update region. @return its kind; ERROR on failure.
KELPLATFORM_API int WINAPI GetUpdateRgn(HWND window, HRGN region, BOOL erase);

/// Sends WM_PAINT to the window if it is visible and its update region is not empty, then to its children likewise.
KELPLATFORM_API BOOL WINAPI UpdateWindow(HWND window);

/// Begins to paint: the update region becomes empty, the background is erased if that is due (WM_ERASEBKGND), and
/// drawing through the context is clipped to what was the update region.
/// @return null on failure; the update region stays then.
KELPLATFORM_API HDC WINAPI BeginPaint(HWND window, LPPAINTSTRUCT paint);

/// Gives the context of BeginPaint back. @return TRUE; FALSE for a null @p paint.
KELPLATFORM_API BOOL WINAPI EndPaint(HWND window, const PAINTSTRUCT* paint);

/// A context of all of the window, its frame included: (0, 0) is its corner. To be given back with ReleaseDC.
/// @param window null: the screen.
KELPLATFORM_API HDC WINAPI GetWindowDC(HWND window);
/// @}

} // extern "C"

#define CreateWindowA(className, name, style, x, y, width, height, parent, menu, instance, parameter)                  \
    CreateWindowExA(0, className, name, style, x, y, width, height, parent, menu, instance, parameter)
