#pragma once

#include <kelcore/imaging/toolkit.h>

#include <string>

/// A toolkit for tests, a module of its own: it keeps the contract of <kelcore/imaging/toolkit.h> well enough to hold
/// pictures, writes down what it is asked, and fails when it is told to. Tests reach it through one more function.
///
/// Its files are texts: "4x3x24" is a picture of 4 by 3 pixels at depth 24, whose colours and pixels are a pattern that
/// depends on nothing else; "DIB" and a packed bitmap behind it is what it saves; whatever else is of an unknown kind.
/// Resizing makes the pattern anew, every other effect turns all bits of the picture's last byte.
namespace kel::recorder {

/// For Recorder::Order: whatever is called.
inline constexpr int kAnyPosition = -1;

/// What happens at calls beside the recorder's own work: it runs on the caller's thread, without a lock.
using Hook = void (*)(void* context, int position);

/// The test's side. Each module has one. Members may be called from every thread.
class Recorder {
public:
    /// Forgets lines, orders, status, refusal, hook and silence; controls are numbered from 1 again.
    virtual void Reset() = 0;

    /// The lines since the last time, one for each call, each with a line break:
    ///
    ///     connect 1                 control number 1 was made
    ///     1 AddRef, 1 Release       its references
    ///     1: 86 4x3x24              position and arguments; blocks by size and depth, 0 for none; results are left out
    ///     1 gone                    the last reference was released
    ///     disconnect 1
    virtual std::string TakeLines() = 0;

    /// From now on the call number @p nth (from 1; 0 for all) of a position only answers @p result.
    virtual void Order(int position, int nth, HRESULT result) = 0;
    /// From now on every load and save comes to @p status, and all of them to what they deserve after kByMerit.
    virtual void OrderStatus(SHORT status) = 0;
    static constexpr SHORT kByMerit = 0x7FFF;
    /// Connecting gives out no control.
    virtual void RefuseControls() = 0;
    virtual void SetHook(Hook hook, void* context) = 0;
    /// Neither writes lines nor takes orders any more, and so lends its callers none of its locks to be ordered by.
    virtual void BeSilent() = 0;

    /// Controls that are alive, and sinks that are connected.
    virtual int Controls() = 0;
    virtual int Sinks() = 0;
    /// Sends an event to a control's sink. @param arguments in their order. @return what the sink answers.
    virtual HRESULT Fire(toolkit::IControl* control, DISPID id, const VARIANT* arguments, UINT count) = 0;

protected:
    ~Recorder() = default;
};

/// "KelRecorder": the module's recorder.
using RecorderFunction = Recorder* (*)();
inline constexpr char kRecorderName[] = "KelRecorder";

} // namespace kel::recorder
