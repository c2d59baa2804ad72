#pragma once

#include "runtime/LiveList.h"

#include <kelcore/runtime/modules.h>

/// What all modules of the process share. One thread at a time.
namespace kel::ModuleState {

struct State {
    LiveList<ModuleBase> modules;
    LiveList<ResourceTarget> targets;
    unsigned short language = 0;
    ILanguageDLLName* provider = nullptr;
};

/// The state, from the library's loading on. When the library's static objects go, the lists are emptied but stay
/// usable: static objects of clients may go later and take themselves off them.
State& Get() noexcept;

} // namespace kel::ModuleState
