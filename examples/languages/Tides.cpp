#include "Tides.h"

#include "InstanceOf.h"
#include "texts.h"

#include <kelcore/runtime/modules.h>

namespace {

class TidesModule : public ModuleBase {
public:
    TidesModule() { Init(InstanceOf(&s_anchor)); }
    ~TidesModule() override { Free(); }

private:
    static constexpr char s_anchor = 0;
};

// Made when it is first asked for, not while the system loads this library, when no other library may be loaded.
TidesModule& Module() {
    static TidesModule module;
    return module;
}

} // namespace

String TideOn(int day) {
    constexpr int kFirst = 6 * 60 + 40;
    constexpr int kLaterEachDay = 50;
    const int minutes = kFirst + day * kLaterEachDay;
    String name;
    name.LoadStringA(IDS_DAYS, day, day, &Module());
    String line;
    line.Format(&Module(), IDS_TIDE, static_cast<const unsigned short*>(name), minutes / 60, minutes % 60);
    return line;
}
