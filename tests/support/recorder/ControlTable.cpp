#include "tests/support/recorder/Control.h"
#include "tests/support/recorder/Dib.h"
#include "tests/support/recorder/Journal.h"
#include "toolkit/SlotTable.h"

#include <type_traits>

namespace kel::recorder {
namespace {

using namespace kel::toolkit;

/// @name Arguments as they are written down; results and files are left out.
/// @{
template <class Number>
requires std::is_arithmetic_v<Number> std::string Said(Number value) {
    std::string text = std::to_string(value);
    if (std::is_floating_point_v<Number>)
        text.erase(text.find_last_not_of('0') + 1);
    return ' ' + text;
}
std::string Said(BSTR text) {
    return ' ' + std::string(text, text + SysStringLen(text));
}
std::string Said(HGLOBAL block) {
    return ' ' + DescribeDib(block);
}
template <class Result>
std::string Said(Result*) {
    return {};
}
/// @}

template <int position, auto work, class... Arguments>
HRESULT STDMETHODCALLTYPE Slot(IControl* control, Arguments... arguments) noexcept {
    Control& self = Control::From(control);
    HRESULT ordered;
    const std::string said = TheJournal().silent ? std::string() : (std::string() + ... + Said(arguments));
    if (TheJournal().Called(self.number, position, said, ordered))
        return ordered;
    return (self.*work)(arguments...);
}

template <auto operation, auto work, class... Arguments>
void PutAs(SlotTable& table, Operation<Arguments...>) {
    table.Put(operation, Slot<operation.position, work, Arguments...>);
}

template <auto operation, auto work>
void Put(SlotTable& table) {
    PutAs<operation, work>(table, operation);
}

HRESULT STDMETHODCALLTYPE Query(IControl*, REFIID, void**) {
    return E_NOINTERFACE; // nobody asks for another
}

ULONG STDMETHODCALLTYPE AddRef(IControl* control) {
    return Control::From(control).AddRef();
}

ULONG STDMETHODCALLTYPE Release(IControl* control) {
    return Control::From(control).Release();
}

void PutBasics(SlotTable& table) {
    table.slots[0] = reinterpret_cast<const void*>(Query);
    table.slots[1] = reinterpret_cast<const void*>(AddRef);
    table.slots[2] = reinterpret_cast<const void*>(Release);
    Put<SetStorage, &Control::IgnoreNumber>(table);
    Put<SetKeepOrientation, &Control::IgnoreNumber>(table);
    Put<SetBudget, &Control::IgnoreNumber>(table);
    Put<SetPixelBudget, &Control::IgnoreNumber>(table);
    Put<SetFileName, &Control::SetFileName>(table);
    Put<GetDibHandle, &Control::GetDibHandle>(table);
    Put<SetDibHandle, &Control::SetDibHandle>(table);
    Put<CreateBlank, &Control::CreateBlank>(table);
    Put<CopyDibHandle, &Control::CopyDibHandle>(table);
    Put<GetLoadStatus, &Control::GetLoadStatus>(table);
    Put<LoadFromMemory, &Control::LoadFromMemory>(table);
}

void PutSavingAndUndo(SlotTable& table) {
    Put<SetSaveTarget, &Control::IgnoreNumber>(table);
    Put<SetSaveFormat, &Control::IgnoreNumber>(table);
    Put<Save, &Control::Save>(table);
    Put<GetSavedBlock, &Control::GetSavedBlock>(table);
    Put<EndSave, &Control::EndSave>(table);
    Put<SetUndoEnabled, &Control::SetUndoEnabled>(table);
    Put<GetUndoEnabled, &Control::GetUndoEnabled>(table);
    Put<GetUndoState, &Control::GetUndoState>(table);
    Put<Undo, &Control::Undo>(table);
}

template <auto... operations>
void PutEffects(SlotTable& table) {
    const auto put = [&]<auto operation, class... Amounts>(Operation<Amounts...>) {
        Put<operation, &Control::Effect<Amounts...>>(table);
    };
    (put.template operator()<operations>(operations), ...);
}

SlotTable MakeTable() {
    SlotTable table;
    PutBasics(table);
    PutSavingAndUndo(table);
    PutEffects<Mosaic, Brightness, Contrast, Flip, Mirror, Negate, Emboss, Sharpen, Soften, Outline, Equalize, Rotate,
               Gamma, Solarize, Posterize, Bulge, Swirl, Pinch, Erode>(table);
    Put<ResizeTo, &Control::Rescale>(table);
    Put<ResampleTo, &Control::Rescale>(table);
    return table;
}

} // namespace

const void* const* ControlTable() {
    static const SlotTable table = MakeTable();
    return table.slots;
}

} // namespace kel::recorder
