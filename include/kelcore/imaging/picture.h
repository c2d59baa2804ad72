#pragma once

/// @file
/// The picture class over the imaging toolkit.

#include <kelcore/bitmap/base.h>
#include <kelcore/runtime/objects.h>
#include <kelcore/stream/serializing.h>
#include <kelcore/widestring.h>

#include <atomic>

class CImagXpress;
class LoadBitmapDeferredNotifier;

namespace kel::toolkit {
struct IControl;
} // namespace kel::toolkit

namespace kel {

class OwnedBlock;

/// What is thrown for an operation of the toolkit that fails: a _com_error with the control it was asked of.
class KELCORE_API ToolkitError : public _com_error {
public:
    /// Holds a reference to @p control, which may be null.
    ToolkitError(HRESULT result, IUnknown* control) noexcept;
    ToolkitError(const ToolkitError& other) noexcept;
    ToolkitError& operator=(const ToolkitError& other) noexcept;
    ~ToolkitError() noexcept override;

    /// The control; null where there was none. It stays this object's.
    IUnknown* Interface() const noexcept;
    /// The identifier of the control's interface.
    static const IID& InterfaceId() noexcept;

private:
    IUnknown* m_control;
};

} // namespace kel

/// A picture that the imaging toolkit holds as a packed device-independent bitmap: it decodes files, changes the
/// picture and saves it. It draws, measures and composes like every other picture.
///
/// The toolkit is a module that is found through its COM registration, or by its name, when a picture first needs it;
/// without it pictures stay empty. Copies share one record and cost a count; whoever changes the picture first takes a
/// copy of his own. Members answer false or null when the toolkit cannot be started and when there is no picture. A
/// toolkit operation that fails throws a kel::ToolkitError, a _com_error, out of whichever member needed it; the
/// picture is then whatever the toolkit left.
///
/// Copies of one picture belong to one thread at a time. While a deferred load is pending, a picture reads as empty and
/// may only be asked IsEmpty and IsLoadBitmapPending, given another file to load, copied, assigned to and destroyed.
///
/// The library registers it with no object factory; clients that store pictures do. Its class identifier is 0x1E75.
/// @code
/// XPDib picture;
/// picture.LoadBitmapA(u"C:\\photo.jpg"_w);
/// picture.Resample(Size(800, 600));
/// picture.Draw(dc, target, IBitmap::BM_Fit, XSize<double>(1.0, 1.0));
/// @endcode
class KELCORE_API XPDib : public BitmapBase, public virtual ISerializable, public virtual KelUnknown {
public:
    /// What the loaders throw, by value.
    enum XPException {
        XP_LzwRefused = 0,   ///< a GIF file or an LZW-compressed TIFF file
        XP_StatusMinus2 = 1, ///< the toolkit answers the load status -2: a damaged file
        XP_BadSource = 2,    ///< no memory to load from
        XP_Failed = 3,       ///< the toolkit cannot be started, answers another status, or has no picture
    };

    /// What the copies of a picture share. It dies with its last owner.
    struct XPDibRef {
        CImagXpress* eventSink = nullptr;          ///< Owned; null until the control is started.
        kel::toolkit::IControl* control = nullptr; ///< One reference; null until it is started.
        WideString fileName;                       ///< Of the file the picture was loaded from, without its folder.
        std::atomic<bool> loadPending{false};      ///< Whether a deferred load is queued or running.
        __int32 refCount = 1;                      ///< How many objects share it.
    };

    /// An empty picture.
    XPDib();
    /// Shares the picture of @p other.
    XPDib(const XPDib& other);
    /// Shares the picture of @p other. A pending load of this object's own is given up: its notifier is not called.
    XPDib& operator=(const XPDib& other);
    /// Whether both objects share one picture; pixels are not compared.
    bool operator==(const XPDib& other) const;
    bool operator!=(const XPDib& other) const;

    int GetBitsPerPixel() const override;

    IBitmap* GetClone() const override;
    bool Draw(HDC dc, const Rect& target, BM_Mode mode, XSize<double> scale) const override;
    bool Draw(HDC dc, const Rect& target, const Rect& source, unsigned long rop) const override;
    /// Drops the picture; a copy that shares it keeps it.
    void SetEmpty() override;
    /// Whether there is no picture, or a deferred load of it is pending.
    bool IsEmpty() const override;
    void* GetDibClone() const override;
    /// Replaces the picture by a blank one.
    /// @param size sides up to 65,535; of larger ones the low 16 bits count.
    /// @return false when a side is less than 1 or the toolkit cannot be started or has no picture then; the picture is
    ///         empty.
    bool CreateBitmap(const Size& size, int bits) override;
    bool IsEqual(const IBitmap& other) const override;
    /// Shares the picture of another XPDib, takes a copy (GetDibClone) of any other.
    /// @return false when there is no copy (this picture is unchanged) or the toolkit cannot be started (it is empty).
    bool AssignBitmap(const IBitmap& source) override;
    bool ClearSurface(unsigned char value) override;
    /// Width and height, for rows in either order; (0, 0) without a picture.
    Size GetDimension() const override;
    /// Rescales the picture by the toolkit's fast road.
    /// @param size sides from 1; the low 16 bits count.
    /// @return as the effects below.
    bool Resize(const Size& size) override;
    /// Replaces the picture by one sized for a target, unless it is near enough to that size: the target's for
    /// BM_Stretch, the fitted picture's for BM_Fit, and a rendering (GDIBitmap::CreatePrescaledBmp) for other modes.
    /// @param limit for BM_Stretch and BM_Fit: resampled only if the target's pixels are fewer than this many times the
    ///        picture's.
    /// @return true also when the picture is near enough; false while a load is pending, for an empty picture or
    ///         target, a factor of 0 or less, and when the rendering fails.
    bool Prescale(const Rect& target, BM_Mode mode, XSize<double> scale, double limit) override;
    /// The pixels in the toolkit's own block, which stays locked until UnlockSurface.
    const void* LockSurface() const override;
    void* LockSurfaceModify() override;
    void UnlockSurface() const override;
    bool HasPalette() const override;
    int GetNumPaletteEntries() const override;
    /// The colour table in the toolkit's own block, behind a header of 40 bytes.
    const RGBQUAD* LockPalette() const override;
    RGBQUAD* LockPaletteModify() override;
    void UnlockPalette() const override;

    /// Reads a picture as Write stores it; see docs/formats/picture.md. A shared picture leaves its copies alone.
    ///
    /// Memory grows with the bytes that arrive, not with the length that is stored.
    /// @throws StreamBase::Exception code 0, "Initializing ImageXpress failed" or "ImageXpress failed" (the toolkit
    ///         cannot read it), or what the stream throws; std::bad_alloc when there is no memory. The picture is then
    ///         empty or what the toolkit left, its file name empty.
    void Read(SerializingInputStream& stream, short version) override;
    /// Stores the picture in the toolkit's own file format.
    /// @throws StreamBase::Exception code 0, "ImagXpress failed" (the toolkit saved nothing) or "GlobalLock failed", or
    ///         what the stream throws.
    void Write(SerializingOutputStream& stream) const override;
    /// 1.
    short Version() const override;

protected:
    /// Gives this object a record of its own with a copy of the picture, without its file name, if it shares one.
    /// @return false only if the toolkit cannot be started for it; this picture is empty then, the others' is not
    ///         touched.
    bool Detach() override;

public:
    /// Ends this object's share. Its queued loads are dropped, and their notifiers are not called; if it is the last
    /// owner and the load is running, this waits for the load's end.
    ~XPDib() override;

    /// The name of the file that the picture was loaded from, without its folder; empty for other pictures.
    WideString GetFilename() const;

    /// @name Loading
    /// Failures of the loaders are thrown: an XPException. The picture is then empty or what the toolkit left; copies
    /// keep theirs.
    /// @{

    /// Loads a picture file and takes over its name.
    /// @param path the first argument; the others are not looked at.
    /// @return true.
    bool LoadBitmapA(const WideString& path, const WideString& = WideString(), const WideString& = WideString(),
                     const WideString& = WideString(), const WideString& = WideString());
    /// Loads from the bytes of a picture file, which stay the caller's. GIF and LZW are not refused; the file name
    /// stays.
    void LoadBitmapA(const void* data, int length);

    /// Lets the loader thread load a file, and returns at once. Until that is done the picture reads as empty. Loads
    /// are served one after the other, in the order of their requests.
    ///
    /// If no thread can be made, the request waits for the next one that can.
    /// @param notifier null, or told of the end on the loader thread; it stays the caller's and must live until then.
    /// @param rectangle what the picture is prescaled to (BM_Fit, limit 0.9) when it is not empty.
    /// @param userValue is given back to @p notifier.
    /// @throws XP_Failed if the toolkit cannot be started; nothing is queued then.
    void LoadBitmapDeferred(const WideString& path, LoadBitmapDeferredNotifier* notifier, const Rect& rectangle,
                            unsigned int userValue);
    /// Whether a deferred load is queued or running.
    bool IsLoadBitmapPending() const;
    /// From its return on no notifier is running, and none is called any more, for any picture, for good. Loads go on.
    static void StopLoadBitmapDeferredNotifier();
    /// @}

    /// Replaces the picture by a copy of a bitmap of the system, at depth 1, 4, 8 or 24.
    /// @param bitmap stays the caller's. @param palette gives its colours a meaning; null means the default palette.
    /// @return false when @p bitmap is none or the system refuses (the picture is unchanged), and when the toolkit
    ///         cannot be started.
    bool SetDDB(HBITMAP bitmap, HPALETTE palette);

    /// @name Effects
    /// Each changes the picture by one operation of the toolkit; docs/effects.md says what they do. They answer false
    /// for an empty picture, and when the toolkit says that it did nothing.
    /// @{
    bool Equalize();
    bool Emboss();
    bool Erode();
    bool Mirror();
    bool Flip();
    bool Negate();
    bool Outline();
    bool Concave();
    bool Convex();
    bool Pinch(short amount);
    bool Gamma(float gamma);
    bool Solarize(short threshold);
    bool Posterize(short levels);
    bool Swirl(double angle);
    bool Contrast(short amount);
    bool Brightness(short amount);
    bool Sharpen(short amount);
    bool Soften(short amount);
    bool Mosaic(short size);
    bool Rotate(double angle);
    /// Rescales the picture by the toolkit's best road.
    /// @param size sides from 1; the low 16 bits count.
    bool Resample(const Size& size);

    /// Whether the toolkit keeps the picture from before each effect. It starts with not; the setting belongs to the
    /// picture, is not copied with it, and is lost on an object that has had none yet.
    void EnableEffectUndo(bool enable);
    /// Whether there is an effect that UndoEffect can take back.
    bool CanUndoEffect() const;
    /// Brings back the picture from before the last effect, if CanUndoEffect.
    void UndoEffect();
    /// @}

protected:
    /// Starts the toolkit's control of a record, if it has none yet.
    /// @return whether it has one.
    /// @throws kel::ToolkitError if a setting fails; the control is started then.
    bool InitImageXpress(XPDibRef* record);

    /// Whether a file is refused for its compression: a GIF file, or a TIFF file whose first compression entry says
    /// LZW. False for a file that cannot be read, is cut short or whose directories run in a circle.
    static bool CheckLZW(const WideString& path);

private:
    bool EndShare();
    void LeaveRecord();
    void TakeNewRecord();
    bool TakeBlock(kel::OwnedBlock& block);
    bool MayChange();
    bool PrescaleByRendering(const Rect& target, BM_Mode mode, XSize<double> scale, double limit);
    bool Prescale_internal(const Rect& target, BM_Mode mode, XSize<double> scale, double limit);

    XPDibRef* m_pRef;
};
