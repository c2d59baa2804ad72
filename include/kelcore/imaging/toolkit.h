#pragma once

/// @file
/// The contract between pictures (XPDib) and the imaging toolkit, a module of its own that is found through its COM
/// registration and loaded at run time. Whoever offers these two functions and this control may stand in its place.
///
/// A control holds one picture as a packed device-independent bitmap: one movable block (`GlobalAlloc`) with a
/// BITMAPINFOHEADER or a longer successor, the colour table and the rows, see docs/formats/packed-dib.md. Different
/// controls may be used by different threads at once; one control is used by one thread at a time.

#include <kelcore/platform.h>

namespace kel::toolkit {

/// The file that is loaded when nothing is registered.
inline constexpr char kModuleName[] = "ImagXpr5.dll";

/// {32DCBA0E-9D05-11D3-A8FB-444553540000}: the class, under which the module's path is registered: the default value of
/// "Software\\Classes\\CLSID\\{…}\\InprocServer32" below HKEY_LOCAL_MACHINE.
inline constexpr CLSID kControlClass = {0x32DCBA0E, 0x9D05, 0x11D3, {0xA8, 0xFB, 0x44, 0x45, 0x53, 0x54, 0x00, 0x00}};
inline constexpr char kControlClassText[] = "{32DCBA0E-9D05-11D3-A8FB-444553540000}";
/// {8C445A8F-9D0A-11D3-A8FB-444553540000}: the control. `QueryInterface` answers it and IUnknown.
inline constexpr IID kControlInterface = {0x8C445A8F, 0x9D0A, 0x11D3, {0xA8, 0xFB, 0x44, 0x45, 0x53, 0x54, 0x00, 0x00}};
/// {8C445A90-9D0A-11D3-A8FB-444553540000}: the events a sink answers.
inline constexpr IID kEventInterface = {0x8C445A90, 0x9D0A, 0x11D3, {0xA8, 0xFB, 0x44, 0x45, 0x53, 0x54, 0x00, 0x00}};

/// A control. Its operations are slots of its virtual table, counted from 0 at QueryInterface; the Operation constants
/// below name them. A slot that is not named there answers E_NOTIMPL.
struct IControl : IUnknown {};

/// The slots of a control's table: positions 0 to 513.
inline constexpr int kSlots = 514;

/// @name Exported functions
/// C calling convention.
/// @{

/// "IX_ConnectEvents": makes a control and connects an event sink to it.
/// @param control receives the new control with one reference that is the caller's; null on failure.
/// @param cookie receives the number of the connection, not 0.
/// @param sink answers kEventInterface; the control calls its Invoke (DISPATCH_METHOD, ids of Event) and keeps a
///        reference (AddRef) until it is disconnected.
/// @param sinkReferences where the sink counts its references.
using ConnectEvents = void (*)(IControl** control, DWORD* cookie, IDispatch* sink, LONG* sinkReferences);
inline constexpr char kConnectEventsName[] = "IX_ConnectEvents";

/// "IX_DisConnectEvents": ends the connection; the sink is released and gets no more events. The control lives on.
using DisconnectEvents = void (*)(IControl* control, DWORD cookie);
inline constexpr char kDisconnectEventsName[] = "IX_DisConnectEvents";
/// @}

/// @name Load status
/// @{
inline constexpr SHORT kLoaded = 0;
inline constexpr SHORT kDamaged = -2;   ///< a file of a known kind that cannot be decoded
inline constexpr SHORT kUnknown = 1;    ///< a file of an unknown kind, or none that can be read
inline constexpr SHORT kOverBudget = 2; ///< the picture would exceed the budget, or what memory there is
/// @}

/// One operation of the control: where it stands and what it is called with. Its result is an HRESULT; a negative one
/// means that nothing has changed, unless it says more.
template <class... Arguments>
struct Operation {
    using Function = HRESULT(STDMETHODCALLTYPE*)(IControl* control, Arguments... arguments);

    int position;

    /// Calls the operation of @p control, which must not be null.
    HRESULT operator()(IControl* control, Arguments... arguments) const {
        void* const* const table = *reinterpret_cast<void* const* const*>(control);
        return reinterpret_cast<Function>(table[position])(control, arguments...);
    }
};

/// A packed device-independent bitmap in global memory, as wide as a pointer.
using Block = HGLOBAL;

/// @name Settings
/// Made once when a control is started, in the order 26, 200, 513, SetUndoEnabled, 260, with the values in brackets.
/// @{
/// How the picture is held [2]: as one packed bitmap in movable memory. Others are refused with E_INVALIDARG.
inline constexpr Operation<LONG> SetStorage{26};
/// Whether photographs keep the orientation of their rows in the file [0]: 0 turns them upright as the orientation tag
/// (0x0112) of their EXIF block or TIFF directory says, another value leaves them. For loads from now on.
inline constexpr Operation<LONG> SetKeepOrientation{200};
/// The budget in MiB: how large a picture's packed bitmap may become by loading [0]: 0 for that of the environment
/// variable KELCORE_PICTURE_BUDGET (MiB as well), or else 512.
inline constexpr Operation<LONG> SetBudget{513};
/// The budget in units of 1,048,576 pixels [0]: 0 for no other than that in bytes.
inline constexpr Operation<LONG> SetPixelBudget{260};
/// @}

/// @name Pictures
/// @{
/// Loads the picture file at a path, which is text that the ANSI code page can spell; the string stays the caller's.
/// S_OK however that ends: GetLoadStatus tells. The control has no picture if it fails.
inline constexpr Operation<BSTR> SetFileName{60};
/// The block of the picture; null when there is none. It stays the control's and where it is until the next operation
/// that changes the picture; its colours and pixels may be written to in place.
inline constexpr Operation<Block*> GetDibHandle{85};
/// Takes the block over as the new picture and frees the old one; null only drops the picture. A block that is not a
/// whole packed bitmap is refused with E_INVALIDARG and stays the caller's.
inline constexpr Operation<Block> SetDibHandle{86};
/// Makes a blank picture, all bytes and colours 0: width, height, bits per pixel, 0. E_INVALIDARG for other values.
inline constexpr Operation<WORD, WORD, LONG, LONG> CreateBlank{399};
/// A copy of the picture's block, which the caller frees (`GlobalFree`); null when there is no picture or no memory.
inline constexpr Operation<Block*> CopyDibHandle{401};
/// What the last load or save came to: kLoaded, kDamaged, kUnknown, kOverBudget. It starts with kLoaded; asking does
/// not change it.
inline constexpr Operation<SHORT*> GetLoadStatus{477};
/// Loads from a picture file's bytes in memory, which stay the caller's: bytes, their number. As SetFileName.
inline constexpr Operation<const BYTE*, LONG> LoadFromMemory{511};
/// @}

/// @name Saving
/// Into memory, in the toolkit's own lossless format, which LoadFromMemory reads back exactly.
/// @{
inline constexpr Operation<LONG> SetSaveTarget{456}; ///< 1: into memory; others are refused with E_INVALIDARG
inline constexpr Operation<LONG> SetSaveFormat{459}; ///< 10: the toolkit's own; others are refused with E_INVALIDARG
/// Saves the picture. S_OK however that ends: GetLoadStatus tells.
inline constexpr Operation<> Save{367};
/// The block of the saved file, the control's until EndSave; null when nothing was saved.
inline constexpr Operation<Block*> GetSavedBlock{457};
inline constexpr Operation<> EndSave{461}; ///< frees the saved file
/// @}

/// @name Undo
/// @{
/// 1 keeps the picture as it was before each effect, 0 does not and drops what is kept. A control starts with 0.
inline constexpr Operation<SHORT> SetUndoEnabled{102};
inline constexpr Operation<SHORT*> GetUndoEnabled{101};
inline constexpr Operation<LONG*> GetUndoState{87}; ///< not 0 when there is an effect to undo
inline constexpr Operation<> Undo{366};             ///< brings back the picture from before the last effect
/// @}

/// @name Effects
/// Each replaces the picture: S_OK. S_FALSE when there is no picture. docs/effects.md says what each does.
/// @{
inline constexpr Operation<SHORT> Mosaic{369};
inline constexpr Operation<SHORT> Brightness{372};
inline constexpr Operation<SHORT> Contrast{373};
inline constexpr Operation<> Flip{374};
inline constexpr Operation<> Mirror{375};
inline constexpr Operation<> Negate{376};
inline constexpr Operation<> Emboss{377};
inline constexpr Operation<SHORT> Sharpen{380};
inline constexpr Operation<SHORT> Soften{381};
inline constexpr Operation<> Outline{382};
inline constexpr Operation<> Equalize{383};
inline constexpr Operation<double> Rotate{385};
inline constexpr Operation<WORD, WORD> ResizeTo{386}; ///< width, height; a side of 0 counts as 1
inline constexpr Operation<float> Gamma{403};
inline constexpr Operation<SHORT> Solarize{405};
inline constexpr Operation<SHORT> Posterize{406};
inline constexpr Operation<LONG> Bulge{407}; ///< 1 concave, 0 convex
inline constexpr Operation<double> Swirl{414};
inline constexpr Operation<SHORT> Pinch{416};
inline constexpr Operation<WORD, WORD> ResampleTo{417}; ///< width, height; a side of 0 counts as 1
inline constexpr Operation<> Erode{419};
/// @}

/// The ids of a control's events, with their arguments.
enum Event : DISPID {
    kMouseUp = -607,    ///< button (short), shift state (short), x, y (32 bits)
    kMouseMove = -606,  ///< as kMouseUp
    kMouseDown = -605,  ///< as kMouseUp
    kDblClick = -601,   ///< none
    kClick = -600,      ///< none
    kToolkitEvent1 = 1, ///< none
    kToolkitEvent2 = 2, ///< two, 32 bits each
    kToolkitEvent3 = 3, ///< five, 32 bits each
};

} // namespace kel::toolkit
