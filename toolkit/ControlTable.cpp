#include "toolkit/ControlTable.h"

#include "toolkit/Control.h"
#include "toolkit/effects/Effect.h"

#include <kelcore/imaging/toolkit.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <new>
#include <tuple>
#include <typeinfo>
#include <utility>

namespace kel::toolkit {
namespace {

/// A virtual table as compilers of both targets lay it out: what stands before the slots is looked at by sanitizers and
/// casts only.
struct Table {
    std::ptrdiff_t offsetToTop = 0;
    const std::type_info* type = &typeid(IControl);
    const void* slots[kSlots];
};
static_assert(offsetof(Table, slots) == 2 * sizeof(void*));

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

/// The function's type is that of the operation: what stands in the contract is what is called.
template <class... Arguments>
void Put(Table& table, Operation<Arguments...> operation, typename Operation<Arguments...>::Function function) {
    table.slots[operation.position] = reinterpret_cast<const void*>(function);
}

template <auto Member, class... Arguments>
void Put(Table& table, Operation<Arguments...> operation) {
    Put(table, operation, Slot<Member, Arguments...>);
}

template <std::size_t Index, class... Arguments>
void PutEffect(Table& table, effects::Effect<Arguments...> effect) {
    Put(table, effect.operation, EffectSlot<Index, Arguments...>);
}

template <std::size_t... Indices>
void PutEffects(Table& table, std::index_sequence<Indices...>) {
    (PutEffect<Indices>(table, std::get<Indices>(effects::kEffects)), ...);
}

void PutUnknown(Table& table) {
    Put<&Control::QueryInterface>(table, Operation<REFIID, void**>{0});
    table.slots[1] = reinterpret_cast<const void*>(AddRef);
    table.slots[2] = reinterpret_cast<const void*>(Release);
}

void PutPictures(Table& table) {
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

void PutSavingAndUndo(Table& table) {
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

Table MakeTable() {
    Table table;
    std::fill(std::begin(table.slots), std::end(table.slots), reinterpret_cast<const void*>(Unnamed));
    PutUnknown(table);
    PutPictures(table);
    PutSavingAndUndo(table);
    PutEffects(table, std::make_index_sequence<std::tuple_size_v<decltype(effects::kEffects)>>());
    return table;
}

} // namespace

const void* const* ControlTable() {
    static const Table table = MakeTable();
    return table.slots;
}

} // namespace kel::toolkit
