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

} // namespace

TEST_CASE("events reach their callbacks with the user words and their values") {
    const struct {
        DISPID id;
        std::vector<LONG> arguments;
        const char* said;
    } rows[] = {{-600, {}, "-600 22 11"},
                {-601, {}, "-601 22 11"},
                {-605, {1, 2, 3, -4}, "-605 22 11 1 2 3 -4"},
                {-606, {5, 6, 70000, 8}, "-606 22 11 5 6 70000 8"},
                {-607, {1, 0, 3, 4}, "-607 22 11 1 0 3 4"},
                {1, {}, "1 22 11"},
                {2, {3, 4}, "2 22 11 3 4"},
                {3, {1, 2, 3, 4, 5}, "3 22 11 1 2 3 4 5"},
                {2, {3}, ""},
                {-602, {1, 2, 3, 4}, ""},
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
            std::vector<VARIANT> arguments(row.arguments.size());
            for (std::size_t i = 0; i != arguments.size(); ++i) {
                arguments[i].vt = VT_I4;
                arguments[i].lVal = row.arguments[i];
            }
            g_said.clear();
            CHECK(recording->Fire(sink.m_pControl, row.id, arguments.data(), static_cast<UINT>(arguments.size())) ==
                  S_OK);
            CHECK(g_said == (withCallbacks ? row.said : ""));
        }
    }
    sink.Disconnect(module);
    CHECK(recording->Sinks() == 0);
    sink.m_pControl->Release();
    FreeLibrary(module);
}

TEST_CASE("a record's control is started once, and let go of step by step") {
    Recording recording;
    XPDib::XPDibRef record;
    OpenPicture picture;
    bool (XPDib::*const start)(XPDib::XPDibRef*) = &OpenPicture::InitImageXpress;
    CHECK((picture.*start)(&record));
    CHECK((picture.*start)(&record));
    CHECK(recording.Calls() == kStart);
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
    for (const IID& id : {kel::toolkit::kEventInterface, IID_IUnknown, IID_IDispatch}) {
        const bool known = !IsEqualIID(id, IID_IDispatch);
        void* answer = &answer;
        CHECK(sink.QueryInterface(id, &answer) == (known ? S_OK : E_NOINTERFACE));
        CHECK(answer == (known ? &sink : nullptr));
    }
    CHECK(sink.QueryInterface(IID_IUnknown, nullptr) == E_POINTER);
    CHECK((sink.AddRef() == 3 && sink.Release() == 2 && sink.Release() == 1 && sink.Release() == 0));
}
