#include <kelcore/gdi/systemcolours.h>

#include "runtime/Lasting.h"
#include "runtime/LiveList.h"

namespace {

kel::Lasting<kel::LiveList<SysColorObject>> g_objects;

struct Emptying {
    ~Emptying() { (*g_objects).Clear(); }
};

const Emptying g_emptying;

} // namespace

SysColorObject::SysColorObject() {
    (*g_objects).Add(this);
}

SysColorObject::SysColorObject(const SysColorObject& /*other*/) : SysColorObject() {}

SysColorObject::~SysColorObject() {
    (*g_objects).Remove(this);
}

void BroadcastSysColorChange() {
    (*g_objects).ForEach([](SysColorObject& object) { object.OnSysColorChange(); });
}
