#include "toolkit/ControlTable.h"

#include "toolkit/Control.h"
#include "toolkit/SlotTable.h"
#include "toolkit/effects/Effect.h"

#include <kelcore/imaging/toolkit.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <new>
#include <tuple>
#include <utility>

namespace kel::toolkit {
namespace {

// Exceptions do not leave the module.
template <class Work>
HRESULT Guarded(Work work) noexcept {
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_FAIL;
    }
}

/// What stands at the position of an operation that is a member of Control.
template <auto Member, class... Arguments>
HRESULT STDMETHODCALLTYPE Slot(IControl* control, Arguments... arguments) noexcept {
    return Guarded([&] { return (Control::From(control).*Member)(arguments...); });
}

/// What stands at the position of the effect number Index.
template <std::size_t Index, class... Arguments>
HRESULT STDMETHODCALLTYPE EffectSlot(IControl* control, Arguments... arguments) noexcept {
    return Guarded([&] {
        return Control::From(control).Apply<Arguments...>(std::get<Index>(effects::kEffects).apply, arguments...);
    });
}

ULONG STDMETHODCALLTYPE AddRef(IControl* control) {
    return Control::From(control).AddRef();
}

ULONG STDMETHODCALLTYPE Release(IControl* control) {
    return Control::From(control).Release();
}

HRESULT STDMETHODCALLTYPE Unnamed(IControl*) {
    return E_NOTIMPL;
}

template <auto Member, class... Arguments>
void Put(SlotTable& table, Operation<Arguments...> operation) {
    table.Put(operation, Slot<Member, Arguments...>);
}

template <std::size_t Index, class... Arguments>
void PutEffect(SlotTable& table, effects::Effect<Arguments...> effect) {
    table.Put(effect.operation, EffectSlot<Index, Arguments...>);
}

template <std::size_t... Indices>
void PutEffects(SlotTable& table, std::index_sequence<Indices...>) {
    (PutEffect<Indices>(table, std::get<Indices>(effects::kEffects)), ...);
}

void PutUnknown(SlotTable& table) {
    Put<&Control::QueryInterface>(table, Operation<REFIID, void**>{0});
    table.slots[1] = reinterpret_cast<const void*>(AddRef);
    table.slots[2] = reinterpret_cast<const void*>(Release);
}

void PutPictures(SlotTable& table) {
    Put<&Control::SetStorage>(table, SetStorage);
    Put<&Control::SetKeepOrientation>(table, SetKeepOrientation);
    Put<&Control::SetBudget>(table, SetBudget);
    Put<&Control::SetPixelBudget>(table, SetPixelBudget);
    Put<&Control::SetFileName>(table, SetFileName);
    Put<&Control::GetDibHandle>(table, GetDibHandle);
    Put<&Control::SetDibHandle>(table, SetDibHandle);
    Put<&Control::CreateBlank>(table, CreateBlank);
    Put<&Control::CopyDibHandle>(table, CopyDibHandle);
    Put<&Control::GetLoadStatus>(table, GetLoadStatus);
    Put<&Control::LoadFromMemory>(table, LoadFromMemory);
}

void PutSavingAndUndo(SlotTable& table) {
    Put<&Control::SetSaveTarget>(table, SetSaveTarget);
    Put<&Control::SetSaveFormat>(table, SetSaveFormat);
    Put<&Control::Save>(table, Save);
    Put<&Control::GetSavedBlock>(table, GetSavedBlock);
    Put<&Control::EndSave>(table, EndSave);
    Put<&Control::SetUndoEnabled>(table, SetUndoEnabled);
    Put<&Control::GetUndoEnabled>(table, GetUndoEnabled);
    Put<&Control::GetUndoState>(table, GetUndoState);
    Put<&Control::Undo>(table, Undo);
}

SlotTable MakeTable() {
    SlotTable table;
    std::fill(std::begin(table.slots), std::end(table.slots), reinterpret_cast<const void*>(Unnamed));
    PutUnknown(table);
    PutPictures(table);
    PutSavingAndUndo(table);
    PutEffects(table, std::make_index_sequence<std::tuple_size_v<decltype(effects::kEffects)>>());
    return table;
}

} // namespace

const void* const* ControlTable() {
    static const SlotTable table = MakeTable();
    return table.slots;
}

} // namespace kel::toolkit
