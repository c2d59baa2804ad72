#include "tests/imaging/Recording.h"

#include <vector>

using namespace kel::test;

namespace {

// What the last callback was given.
std::string g_said;

template <class... Values>
void Say(const char* name, DWORD second, DWORD first, Values... values) {
    g_said =
        name + ((' ' + std::to_string(second) + ' ' + std::to_string(first)) + ... + (' ' + std::to_string(values)));
}

void SetCallbacks(CImagXpress& sink) {
    sink.m_pClick = [](DWORD second, DWORD first) { Say("click", second, first); };
    sink.m_pDblClick = [](DWORD second, DWORD first) { Say("double", second, first); };
    sink.m_pMouseDown = [](DWORD second, DWORD first, SHORT button, SHORT shift, LONG x, LONG y) {
        Say("down", second, first, button, shift, x, y);
    };
    sink.m_pMouseMove = [](DWORD second, DWORD first, SHORT button, SHORT shift, LONG x, LONG y) {
        Say("move", second, first, button, shift, x, y);
    };
    sink.m_pMouseUp = [](DWORD second, DWORD first, SHORT button, SHORT shift, LONG x, LONG y) {
        Say("up", second, first, button, shift, x, y);
    };
    sink.m_pToolkitEvent1 = [](DWORD second, DWORD first) { Say("one", second, first); };
    sink.m_pToolkitEvent2 = [](DWORD second, DWORD first, LONG a, LONG b) { Say("two", second, first, a, b); };
    sink.m_pToolkitEvent3 = [](DWORD second, DWORD first, LONG a, LONG b, LONG c, LONG d, LONG e) {
        Say("three", second, first, a, b, c, d, e);
    };
    sink.m_dwUser1 = 11;
    sink.m_dwUser2 = 22;
}

std::vector<VARIANT> Arguments(std::initializer_list<LONG> values) {
    std::vector<VARIANT> arguments;
    for (const LONG value : values) {
        VARIANT argument = {};
        argument.vt = VT_I4;
        argument.lVal = value;
        arguments.push_back(argument);
    }
    return arguments;
}

} // namespace

TEST_CASE("events reach their callbacks with the user words and their values") {
    const struct {
        DISPID id;
        std::vector<VARIANT> arguments;
        const char* said;
    } rows[] = {{-600, {}, "click 22 11"},
                {-601, {}, "double 22 11"},
                {-605, Arguments({1, 2, 3, -4}), "down 22 11 1 2 3 -4"},
                {-606, Arguments({5, 6, 70000, 8}), "move 22 11 5 6 70000 8"},
                {-607, Arguments({1, 0, 3, 4}), "up 22 11 1 0 3 4"},
                {1, {}, "one 22 11"},
                {2, Arguments({3, 4}), "two 22 11 3 4"},
                {3, Arguments({1, 2, 3, 4, 5}), "three 22 11 1 2 3 4 5"},
                {2, Arguments({3}), ""},
                {-602, Arguments({1, 2, 3, 4}), ""},
                {0, {}, ""},
                {4, {}, ""}};
    Recording recording;
    const HMODULE module = LoadLibraryA(KELCORE_TEST_RECORDER);
    CImagXpress sink;
    sink.Connect(module);
    REQUIRE(sink.m_pControl != nullptr);
    for (const bool withCallbacks : {false, true}) {
        if (withCallbacks)
            SetCallbacks(sink);
        for (const auto& row : rows) {
            CAPTURE(row.id);
            g_said.clear();
            CHECK(recording->Fire(sink.m_pControl, row.id, row.arguments.data(),
                                  static_cast<UINT>(row.arguments.size())) == S_OK);
            CHECK(g_said == (withCallbacks ? row.said : ""));
        }
    }
    sink.Disconnect(module);
    CHECK(recording->Sinks() == 0);
    sink.m_pControl->Release();
    FreeLibrary(module);
}

TEST_CASE("a picture's sink accepts events and does nothing") {
    Recording recording;
    XPDib::XPDibRef record;
    CHECK(OpenPicture::InitImageXpress(&record));
    CHECK(OpenPicture::InitImageXpress(&record));
    CHECK(recording.Calls() == kStart);
    for (const DISPID id : {-600, -601, -605, -606, -607, 1, 2, 3})
        CHECK(recording->Fire(record.control, id, Arguments({1, 2, 3, 4, 5}).data(), 5) == S_OK);
    CHECK((record.eventSink->m_dwUser1 == 0 && record.eventSink->m_pClick == nullptr));
    // What letting go of a record does, step by step.
    record.control->Release();
    const HMODULE module = LoadLibraryA(kel::toolkit::kModuleName);
    record.eventSink->Disconnect(module);
    record.eventSink->m_pControl->Release();
    CHECK(recording.Calls() == kStop);
    FreeLibrary(module);
    delete record.eventSink;
}

TEST_CASE("a sink answers for the event interface and IUnknown alone, and never deletes itself") {
    CImagXpress sink;
    void* answer = nullptr;
    const struct {
        const IID& id;
        HRESULT result;
    } rows[] = {{kel::toolkit::kEventInterface, S_OK},
                {IID_IUnknown, S_OK},
                {IID_IDispatch, E_NOINTERFACE},
                {kel::toolkit::kControlInterface, E_NOINTERFACE}};
    for (const auto& row : rows) {
        answer = &answer;
        CHECK(sink.QueryInterface(row.id, &answer) == row.result);
        CHECK(answer == (row.result == S_OK ? &sink : nullptr));
    }
    CHECK(sink.QueryInterface(IID_IUnknown, nullptr) == E_POINTER);
    CHECK((sink.AddRef() == 3 && sink.Release() == 2 && sink.Release() == 1 && sink.Release() == 0));
    CHECK(sink.GetTypeInfoCount(nullptr) == S_OK);
    CHECK(sink.GetTypeInfo(0, 0, nullptr) == S_OK);
    CHECK(sink.GetIDsOfNames(IID_NULL, nullptr, 0, 0, nullptr) == S_OK);
}
