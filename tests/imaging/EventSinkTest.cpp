#include "tests/imaging/Recording.h"

#include <vector>

using namespace kel::test;

namespace {

// What the last callback was given: the event, the user words, the values.
std::string g_said;

template <DISPID id, class... Values>
void Say(DWORD second, DWORD first, Values... values) {
    g_said = std::to_string(id);
    for (const auto value : {static_cast<LONG>(second), static_cast<LONG>(first), static_cast<LONG>(values)...})
        g_said += ' ' + std::to_string(value);
}

void SetCallbacks(CImagXpress& sink) {
    sink.m_pClick = Say<-600>;
    sink.m_pDblClick = Say<-601>;
    sink.m_pMouseDown = Say<-605>;
    sink.m_pMouseMove = Say<-606>;
    sink.m_pMouseUp = Say<-607>;
    sink.m_pToolkitEvent1 = Say<1>;
    sink.m_pToolkitEvent2 = Say<2>;
    sink.m_pToolkitEvent3 = Say<3>;
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
    } rows[] = {{-600, {}, "-600 22 11"},
                {-601, {}, "-601 22 11"},
                {-605, Arguments({1, 2, 3, -4}), "-605 22 11 1 2 3 -4"},
                {-606, Arguments({5, 6, 70000, 8}), "-606 22 11 5 6 70000 8"},
                {-607, Arguments({1, 0, 3, 4}), "-607 22 11 1 0 3 4"},
                {1, {}, "1 22 11"},
                {2, Arguments({3, 4}), "2 22 11 3 4"},
                {3, Arguments({1, 2, 3, 4, 5}), "3 22 11 1 2 3 4 5"},
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
    OpenPicture picture;
    bool (XPDib::*const start)(XPDib::XPDibRef*) = &OpenPicture::InitImageXpress;
    CHECK((picture.*start)(&record));
    CHECK((picture.*start)(&record));
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
