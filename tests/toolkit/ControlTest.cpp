#include "tests/toolkit/Toolkit.h"

#include "tests/support/Faults.h"
#include "tests/support/Threads.h"

#include <array>
#include <atomic>
#include <string>

using namespace kel::test;

namespace {

constexpr std::initializer_list<DWORD> kPlain16 = {0x7C00, 0x03E0, 0x001F};
constexpr std::initializer_list<DWORD> k565 = {0xF800, 0x07E0, 0x001F};
constexpr std::initializer_list<DWORD> kPlain32 = {0xFF0000, 0x00FF00, 0x0000FF};

std::string RegisteredPath() {
    char path[MAX_PATH] = {};
    LONG size = sizeof path;
    const std::string key = std::string("Software\\Classes\\CLSID\\") + toolkit::kControlClassText + "\\InprocServer32";
    return RegQueryValueA(HKEY_LOCAL_MACHINE, key.c_str(), path, &size) == ERROR_SUCCESS ? path : "";
}

} // namespace

TEST_CASE("a control outlives the module's handle, its connection and all but its last reference") {
    const Control control;
    CHECK(control.SinkReferences() == 1);
    CHECK(control.Cookie() != 0);
    const Control other;
    CHECK(other.Cookie() != control.Cookie());

    for (const IID& id : {toolkit::kControlInterface, IID_IUnknown}) {
        void* same = nullptr;
        CHECK(control.Interface()->QueryInterface(id, &same) == S_OK);
        CHECK(same == control.Interface());
        CHECK(control.Interface()->Release() == 1);
    }
    void* none = &none;
    CHECK(control.Interface()->QueryInterface(toolkit::kEventInterface, &none) == E_NOINTERFACE);
    CHECK(none == nullptr);
    CHECK(control.Interface()->QueryInterface(IID_IUnknown, nullptr) == E_POINTER);

    const Module module;
    const auto disconnect = module.Entry<toolkit::DisconnectEvents>(toolkit::kDisconnectEventsName);
    disconnect(control.Interface(), other.Cookie());
    CHECK(control.SinkReferences() == 1);
    disconnect(control.Interface(), control.Cookie());
    disconnect(control.Interface(), control.Cookie());
    disconnect(nullptr, control.Cookie());
    CHECK(control.SinkReferences() == 0);
    CHECK(control(toolkit::CreateBlank, 2, 2, 8, 0) == S_OK);
}

TEST_CASE("a sink that does not answer for the events gets no control") {
    const Module module;
    const auto connect = module.Entry<toolkit::ConnectEvents>(toolkit::kConnectEventsName);
    Sink sink;
    sink.answer = E_NOINTERFACE;
    for (IDispatch* refused : {static_cast<IDispatch*>(&sink), static_cast<IDispatch*>(nullptr)}) {
        auto* control = reinterpret_cast<toolkit::IControl*>(&sink);
        DWORD cookie = 7;
        connect(&control, &cookie, refused, &sink.references);
        CHECK(control == nullptr);
        CHECK(cookie == 0);
    }
    CHECK(sink.references == 0);
}

TEST_CASE("positions without a name answer that there is nothing") {
    const Control control;
    for (const int position : {3, 25, 100, 103, 204, 368, 418, 510, 512})
        CHECK(control(toolkit::Operation<>{position}) == E_NOTIMPL);
}

TEST_CASE("settings take what has a meaning") {
    const Control control;
    CHECK(control(toolkit::SetStorage, 2) == S_OK);
    CHECK(control(toolkit::SetStorage, 1) == E_INVALIDARG);
    CHECK(control(toolkit::SetBudget, -1) == E_INVALIDARG);
    CHECK(control(toolkit::SetPixelBudget, -1) == E_INVALIDARG);
    CHECK(control(toolkit::SetSaveTarget, 2) == E_INVALIDARG);
    CHECK(control(toolkit::SetSaveFormat, 1) == E_INVALIDARG);
    CHECK(control.Get(toolkit::GetLoadStatus) == toolkit::kLoaded);
    CHECK(control(toolkit::GetDibHandle, nullptr) == E_POINTER);
}

TEST_CASE("a whole packed bitmap is taken over as it is, in its block") {
    const Shape rows[] = {
        {1, 1, 1},      {33, 3, 1, 1},  {7, 5, 4},          {7, -5, 4, 3},
        {9, 2, 8},      {9, 2, 8, 200}, {3, 2, 16},         {3, 3, 24},
        {3, -3, 24, 5}, {3, 2, 32},     {3, 2, 32, 0, 124}, {5, 1, 32, 0, 108, BI_BITFIELDS, kPlain32},
    };
    const Control control;
    HGLOBAL last = nullptr;
    for (const Shape& shape : rows) {
        CAPTURE(shape.depth);
        Bytes dib = DibOf(shape);
        dib.resize(dib.size() + 5); // blocks may be larger than what lies in them
        const HGLOBAL block = BlockOf(dib);
        REQUIRE(control(toolkit::SetDibHandle, block) == S_OK);
        CHECK(control.Get(toolkit::GetDibHandle) == block);
        CHECK(control.Picture() == dib);
        if (last)
            CHECK(GlobalFlags(last) == GMEM_INVALID_HANDLE);
        last = block;
    }
    CHECK(control(toolkit::SetDibHandle, last) == S_OK); // its own one
    CHECK(control.Get(toolkit::GetDibHandle) == last);
    const HGLOBAL copy = control.Get(toolkit::CopyDibHandle);
    CHECK(copy != last);
    CHECK(control(toolkit::SetDibHandle, nullptr) == S_OK);
    CHECK(GlobalFlags(last) == GMEM_INVALID_HANDLE);
    CHECK(control.Get(toolkit::GetDibHandle) == nullptr);
    CHECK(control.Get(toolkit::CopyDibHandle) == nullptr);
    CHECK(BytesOf<Bytes>(copy) == DibOf(rows[11]));
    GlobalFree(copy);
}

TEST_CASE("masks behind a header go: pixels lie where header and table end") {
    const Control control;
    for (const WORD depth : {16, 32}) {
        const std::initializer_list<DWORD> masks = depth == 16 ? kPlain16 : kPlain32;
        const HGLOBAL block = BlockOf(DibOf({3, -2, depth, 2, 40, BI_BITFIELDS, masks}));
        REQUIRE(control(toolkit::SetDibHandle, block) == S_OK);
        CHECK(control.Get(toolkit::GetDibHandle) == block);
        const HGLOBAL copy = control.Get(toolkit::CopyDibHandle);
        CHECK(BytesOf<Bytes>(copy) == DibOf({3, -2, depth, 2}));
        GlobalFree(copy);
    }
}

TEST_CASE("what is no whole packed bitmap is refused and stays the caller's") {
    const Shape rows[] = {
        {0, 1, 24},  {2, 2, 8, 257},         {2, 2, 24, 0, 40, BI_BITFIELDS, kPlain32},
        {1, 0, 24},  {2, 2, 1, 3},           {2, 2, 16, 0, 40, BI_BITFIELDS, k565},
        {-1, 1, 24}, {2, 2, 24, 0, 12},      {2, 2, 32, 0, 44, BI_BITFIELDS, kPlain32},
        {1, 1, 2},   {2, 2, 8, 0, 40, 1},    {0x7FFFFFFF, 0x7FFFFFFF, 32},
        {1, 1, 0},   {2, 2, 24, 0xFFFFFFFF}, {0x10000, 0x10000, 1},
        {1, 1, 64},
    };
    const Control control;
    REQUIRE(control(toolkit::CreateBlank, 1, 1, 24, 0) == S_OK);
    const Bytes before = control.Picture();
    const auto refuses = [&](const Bytes& bytes) {
        const HGLOBAL block = BlockOf(bytes);
        CHECK(control(toolkit::SetDibHandle, block) == E_INVALIDARG);
        CHECK(BytesOf<Bytes>(block) == bytes);
        GlobalFree(block);
        CHECK(control.Picture() == before);
    };
    for (const Shape& shape : rows) {
        CAPTURE(&shape - rows);
        Bytes dib = FrontOf(shape);
        dib.resize(4096);
        refuses(dib);
    }
    const Bytes whole = DibOf({2, 2, 4});
    for (std::size_t size = 1; size < whole.size(); ++size)
        refuses(Cut(whole, size));
}

TEST_CASE("blank pictures are black at every depth") {
    const Control control;
    for (const WORD depth : {1, 4, 8, 16, 24, 32}) {
        CAPTURE(depth);
        REQUIRE(control(toolkit::CreateBlank, 5, 3, depth, 0) == S_OK);
        const Shape shape = {5, 3, depth};
        Bytes expected = FrontOf(shape);
        expected.resize(40 + shape.Table() + 3 * shape.RowBytes());
        CHECK(control.Picture() == expected);
    }
    const Bytes last = control.Picture();
    const std::array<LONG, 4> refused[] = {{0, 1, 24, 0}, {1, 0, 24, 0}, {1, 1, 5, 0}, {1, 1, 24, 1}, {1, 1, -24, 0}};
    for (const auto& row : refused)
        CHECK(control(toolkit::CreateBlank, row[0], row[1], row[2], row[3]) == E_INVALIDARG);
    CHECK(control.Picture() == last);
}

TEST_CASE("undo brings back the picture before the last effect, once, while it is enabled") {
    const Control control;
    CHECK(control(toolkit::Negate) == S_FALSE); // no picture
    const Bytes dib = DibOf({5, 4, 24});
    const auto begin = [&] { REQUIRE(control(toolkit::SetDibHandle, BlockOf(dib)) == S_OK); };
    begin();
    CHECK(control(toolkit::Negate) == S_OK);
    CHECK(control.Get(toolkit::GetUndoState) == 0);
    CHECK(control(toolkit::Undo) == S_FALSE);

    begin();
    CHECK(control(toolkit::SetUndoEnabled, 1) == S_OK);
    CHECK(control.Get(toolkit::GetUndoEnabled) == 1);
    CHECK(control(toolkit::Negate) == S_OK);
    const Bytes negative = control.Picture();
    CHECK(negative != dib);
    CHECK(control(toolkit::ResampleTo, 2, 2) == S_OK);
    CHECK(control.Get(toolkit::GetUndoState) != 0);
    CHECK(control(toolkit::Undo) == S_OK);
    CHECK(control.Picture() == negative);
    CHECK(control.Get(toolkit::GetUndoState) == 0);

    // A picture that comes from elsewhere has no past, and what is disabled is forgotten.
    CHECK(control(toolkit::Negate) == S_OK);
    begin();
    CHECK(control.Get(toolkit::GetUndoState) == 0);
    CHECK(control(toolkit::Negate) == S_OK);
    CHECK(control(toolkit::SetUndoEnabled, 0) == S_OK);
    CHECK(control(toolkit::SetUndoEnabled, 1) == S_OK);
    CHECK(control.Get(toolkit::GetUndoState) == 0);
}

TEST_CASE("a failing call of the system costs no picture, spoils none and leaves nothing behind") {
    HRESULT(*const works[])
    (const Control&) = {
        [](const Control& c) { return c(toolkit::Negate); },
        [](const Control& c) { return c(toolkit::Mirror); },
        [](const Control& c) { return c(toolkit::ResizeTo, 4, 3); },
        [](const Control& c) { return c(toolkit::Rotate, 90); },
        [](const Control& c) { return c(toolkit::Rotate, 45); },
        [](const Control& c) { return c(toolkit::ResampleTo, 4, 3); },
        [](const Control& c) { return c(toolkit::Save) + c(toolkit::EndSave); },
    };
    const Control control;
    CHECK(control(toolkit::SetUndoEnabled, 1) == S_OK);
    Bytes grey = DibOf({9, 7, 8, 200});
    std::fill_n(grey.begin() + 40, 800, BYTE{0x55});
    for (const Bytes& dib : {grey, DibOf({9, 7, 4, 5}), DibOf({9, -7, 16}), DibOf({9, 7, 32})})
        for (const auto work : works) {
            REQUIRE(control(toolkit::SetDibHandle, BlockOf(dib)) == S_OK);
            SetLastError(ERROR_SUCCESS);
            REQUIRE(work(control) == S_OK);
            CHECK(GetLastError() != ERROR_INVALID_HANDLE); // no block is touched when it is gone
            const Bytes expected = control.Picture();
            CHECK(control(toolkit::SetDibHandle, nullptr) == S_OK);
            WithEachCallFailing(ERROR_NOT_ENOUGH_MEMORY, [&] {
                const HGLOBAL block = BlockOf(dib);
                if (control(toolkit::SetDibHandle, block) != S_OK) {
                    GlobalFree(block);
                    return;
                }
                const HRESULT result = block ? work(control) : S_FALSE;
                if (block && FaultIsOver())
                    CHECK(control.Picture() == (result == S_OK ? expected : dib));
                control(toolkit::SetDibHandle, nullptr);
            });
        }
}

TEST_CASE("the module registers itself by its own path and takes that back") {
    const Module module;
    using Entry = HRESULT(STDMETHODCALLTYPE*)();
    const auto unregister = module.Entry<Entry>("DllUnregisterServer");
    char path[MAX_PATH] = {};
    GetModuleFileNameA(module.Handle(), path, sizeof path);
    CHECK(module.Entry<Entry>("DllRegisterServer")() == S_OK);
    CHECK(RegisteredPath() == path);
    CHECK(unregister() == S_OK);
    CHECK(RegisteredPath().empty());
    CHECK(unregister() == S_OK);
}

TEST_CASE("controls work on different threads at once") {
    std::atomic<int> same{0};
    OnThreads(4, [&](int number) {
        const Bytes dib = DibOf({40, 30, 24}, static_cast<std::uint32_t>(number));
        for (int i = 0; i < 20; ++i) {
            const Control control;
            control(toolkit::SetDibHandle, BlockOf(dib));
            const Bytes saved = control.Saved();
            same += control.Load(saved) == toolkit::kLoaded && control.Picture() == dib ? 1 : 0;
        }
    });
    CHECK(same == 4 * 20);
}
