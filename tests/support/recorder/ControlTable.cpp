#include "tests/support/recorder/Control.h"

#include "tests/support/Blocks.h"
#include "tests/support/recorder/Dib.h"
#include "tests/support/recorder/Journal.h"
#include "toolkit/SlotTable.h"

#include <type_traits>
#include <utility>

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

std::string ContentOf(BSTR path) {
    std::string name(path, path + SysStringLen(path));
    const HANDLE file = CreateFileA(name.c_str(), GENERIC_READ, FILE_SHARE_READ, /*security*/ nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, /*like*/ nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return {};
    std::string content(GetFileSize(file, nullptr), '\0');
    DWORD count = 0;
    ReadFile(file, content.data(), static_cast<DWORD>(content.size()), &count, /*overlapped*/ nullptr);
    CloseHandle(file);
    return content;
}

template <int position, class Work, class... Arguments>
HRESULT STDMETHODCALLTYPE Slot(IControl* control, Arguments... arguments) noexcept {
    Control& self = Control::From(control);
    HRESULT ordered;
    const std::string said = TheJournal().silent ? std::string() : (std::string() + ... + Said(arguments));
    if (TheJournal().Called(self.number, position, said, ordered))
        return ordered;
    return Work()(self, arguments...);
}

template <class Work, auto operation, class... Arguments>
void PutAs(SlotTable& table, Operation<Arguments...>) {
    table.Put(operation, Slot<operation.position, Work, Arguments...>);
}

/// Every one of these operations does @p work.
template <auto... operations, class Work>
void Put(SlotTable& table, Work) {
    (PutAs<Work, operations>(table, operations), ...);
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

template <class Value>
HRESULT Give(Value* to, Value value) {
    *to = value;
    return S_OK;
}

void PutPictures(SlotTable& table) {
    Put<SetFileName>(table, [](Control& c, BSTR path) { return c.Load(ContentOf(path)); });
    Put<LoadFromMemory>(table, [](Control& c, const BYTE* file, LONG length) {
        return c.Load(std::string(reinterpret_cast<const char*>(file), static_cast<std::size_t>(length)));
    });
    Put<GetLoadStatus>(table, [](Control& c, SHORT* status) { return Give(status, c.status); });
    Put<GetDibHandle>(table, [](Control& c, HGLOBAL* block) { return Give(block, c.picture); });
    Put<SetDibHandle>(table, [](Control& c, HGLOBAL block) {
        c.Take({});
        return Give(&c.picture, block);
    });
    Put<CopyDibHandle>(table, [](Control& c, HGLOBAL* block) {
        return Give(block, c.picture ? test::BlockOf(test::BytesOf<std::string>(c.picture)) : nullptr);
    });
    Put<CreateBlank>(table, [](Control& c, WORD width, WORD height, LONG depth, LONG) {
        return c.Take(PackedDib(width, height, depth, /*blank*/ true));
    });
}

void PutSavingAndUndo(SlotTable& table) {
    Put<Save>(table, [](Control& c) { return c.Save(); });
    Put<GetSavedBlock>(table, [](Control& c, HGLOBAL* block) { return Give(block, c.saved); });
    Put<EndSave>(table, [](Control& c) { return c.EndSave(); });
    Put<SetUndoEnabled>(table, [](Control& c, SHORT enabled) { return Give(&c.undoEnabled, enabled); });
    Put<GetUndoEnabled>(table, [](Control& c, SHORT* enabled) { return Give(enabled, c.undoEnabled); });
    Put<GetUndoState>(table, [](Control& c, LONG* state) {
        return Give(state, LONG{c.before.empty() ? 0 : 0x10000}); // none of its low bits says it
    });
    Put<Undo>(table, [](Control& c) {
        c.Take(std::exchange(c.before, std::string()));
        return S_OK;
    });
}

SlotTable MakeTable() {
    SlotTable table;
    table.slots[0] = reinterpret_cast<const void*>(Query);
    table.slots[1] = reinterpret_cast<const void*>(AddRef);
    table.slots[2] = reinterpret_cast<const void*>(Release);
    Put<SetStorage, SetKeepOrientation, SetBudget, SetPixelBudget, SetSaveTarget, SetSaveFormat>(
        table, [](Control&, LONG) { return S_OK; });
    PutPictures(table);
    PutSavingAndUndo(table);
    Put<Mosaic, Brightness, Contrast, Flip, Mirror, Negate, Emboss, Sharpen, Soften, Outline, Equalize, Rotate, Gamma,
        Solarize, Posterize, Bulge, Swirl, Pinch, Erode>(table, [](Control& c, auto...) { return c.Change(); });
    Put<ResizeTo, ResampleTo>(table, [](Control& c, WORD width, WORD height) { return c.Rescale(width, height); });
    return table;
}

} // namespace

const void* const* ControlTable() {
    static const SlotTable table = MakeTable();
    return table.slots;
}

} // namespace kel::recorder
