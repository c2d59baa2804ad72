#include "tests/imaging/Recording.h"

#include "tests/support/Tokens.h"
#include "tests/support/recorder/Dib.h"

#include <kelcore/file.h>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

using namespace kel::test;
using kel::recorder::PackedDib;

namespace {

constexpr auto kLongWait = std::chrono::seconds(20);

// Tells what it is told, one text an end: "a.pic 7 done", "a.pic 8 X 3".
class Listener final : public LoadBitmapDeferredNotifier {
public:
    void OnBitmapLoaded(const WideString& path, XPDib* picture, unsigned int user) override {
        End(path, user, " done", picture);
    }
    void OnBitmapLoadFailed(const WideString& path, XPDib* picture, XPDib::XPException code,
                            unsigned int user) override {
        End(path, user, " X " + std::to_string(code), picture);
    }

    /// Waits for an end. @return its text.
    std::string Next() {
        if (!m_ends.TakeWithin(kLongWait))
            return "nothing";
        const std::lock_guard guard(m_mutex);
        const std::string end = m_told.front();
        m_told.erase(m_told.begin());
        return end;
    }

    std::function<void(XPDib* picture)> atEnd; // runs first, on the loader thread

private:
    void End(const WideString& path, unsigned int user, const std::string& how, XPDib* picture) {
        if (atEnd)
            atEnd(picture);
        {
            const std::lock_guard guard(m_mutex);
            m_told.push_back(StdW2A(File::GetBasename(path, WideString())) + ' ' + std::to_string(user) + how);
        }
        m_ends.Put();
    }

    Tokens m_ends;
    std::mutex m_mutex;
    std::vector<std::string> m_told;
};

// Holds every load of a file until it is let go.
class Gate {
public:
    explicit Gate(const Recording& recording) : m_recording(recording) { m_recording->SetHook(Pass, this); }
    Gate(const Gate&) = delete;
    Gate& operator=(const Gate&) = delete;
    ~Gate() { m_recording->SetHook(nullptr, nullptr); }

    void WaitForLoad() { REQUIRE(m_arrived.TakeWithin(kLongWait)); }
    void LetGo() { m_mayGo.Put(); }

    std::atomic<bool> lookedAtResult{false}; // a load has been done, all but its file name

private:
    static void Pass(void* context, int position) {
        Gate& gate = *static_cast<Gate*>(context);
        if (position == kel::toolkit::SetFileName.position) {
            gate.m_arrived.Put();
            gate.m_mayGo.Take();
        }
        if (position == kel::toolkit::GetDibHandle.position)
            gate.lookedAtResult = true;
    }

    const Recording& m_recording;
    Tokens m_arrived, m_mayGo;
};

// What most cases need. Files: a.pic, b.pic and c.pic hold pictures, gif.pic and bad.pic do not.
struct Case {
    Case() {
        path[1] = folder.Write("b.pic", "5x6x8");
        path[2] = folder.Write("c.pic", "7x7x1");
        folder.Write("gif.pic", "GIF8");
        folder.Write("bad.pic", "no picture");
    }

    void Load(XPDib& picture, const String& file, unsigned int user, const Rect& rectangle = Rect()) {
        picture.LoadBitmapDeferred(file, &listener, rectangle, user);
    }

    TempFolder folder;
    String path[3] = {folder.Write("a.pic", "40x30x24")};
    Recording recording;
    Listener listener;
};

} // namespace

TEST_CASE("a deferred load ends as the toolkit says and tells so, by the calls that are written down") {
    const struct {
        const char* file;
        Rect rectangle;
        int position; // that only answers `result`; 0 for none
        HRESULT result;
        SHORT status;
        const char* end;
        const char* calls; // behind the path
    } rows[] = {{"a.pic", {}, 0, S_OK, 0, "a.pic 9 done", ", 477, 85"},
                {"a.pic", {0, 0, 20, 20}, 0, S_OK, 0, "a.pic 9 done", ", 477, 85, 85, 85, 417 20 15"},
                {"a.pic", {0, 0, 40, 30}, 0, S_OK, 0, "a.pic 9 done", ", 477, 85, 85, 85"},
                {"a.pic", {7, 7, 7, 9}, 0, S_OK, 0, "a.pic 9 done", ", 477, 85"},
                {"a.pic", {0, 0, 20, 20}, 417, E_FAIL, 0, "a.pic 9 X 3", nullptr},
                {"a.pic", {}, 0, S_OK, -2, "a.pic 9 X 1", ", 477"},
                {"a.pic", {}, 0, S_OK, 5, "a.pic 9 X 3", ", 477"},
                {"bad.pic", {}, 0, S_OK, 0, "bad.pic 9 X 3", ", 477, 85"},
                {"gif.pic", {}, 0, S_OK, 0, "gif.pic 9 X 0", ""},
                {"a.pic", {}, 60, E_OUTOFMEMORY, 0, "a.pic 9 X 3", nullptr},
                {"a.pic", {}, 477, E_FAIL, 0, "a.pic 9 X 3", nullptr}};
    Case test;
    for (const auto& row : rows) {
        CAPTURE(row.end);
        CAPTURE(row.calls);
        test.recording->Reset();
        XPDib picture;
        CHECK(picture.CreateBitmap({1, 1}, 1));
        test.recording.Calls();
        if (row.position != 0)
            test.recording->Order(row.position, 1, row.result);
        test.recording->OrderStatus(row.status);
        XPDib* told = nullptr;
        bool wasPending = true;
        test.listener.atEnd = [&](XPDib* of) {
            told = of;
            wasPending = of->IsLoadBitmapPending();
        };
        const String file = test.folder.Path(row.file);
        test.Load(picture, file, 9, row.rectangle);
        CHECK(test.listener.Next() == row.end);
        CHECK((told == &picture && !wasPending && !picture.IsLoadBitmapPending()));
        const bool isLoaded = std::string_view(row.end).ends_with("done");
        if (row.calls)
            CHECK(test.recording.Calls() ==
                  (*row.calls ? "477, 60 " + StdW2A(File::GetShortPath(file)) : "") + row.calls);
        CHECK((picture.GetFilename() == u"a.pic"_w) == isLoaded);
    }
}

TEST_CASE("loads are served in the order of their requests, and pictures read as empty until then") {
    Case test;
    Gate gate(test.recording);
    XPDib first, second, third;
    CHECK(first.CreateBitmap({2, 2}, 8));
    const XPDib copy(first);
    test.Load(first, test.path[0], 1);
    test.Load(second, test.path[1], 2);
    third.LoadBitmapDeferred(test.path[2], nullptr, Rect(), 3);
    gate.WaitForLoad();
    for (XPDib* const picture : {&first, &second, &third}) {
        CHECK((picture->IsEmpty() && picture->IsLoadBitmapPending()));
        CHECK_FALSE(picture->Prescale(Rect(0, 0, 1, 1), IBitmap::BM_Fit, {1, 1}, 9));
    }
    CHECK((copy != first && !copy.IsEmpty() && copy.GetDimension().cx == 2));
    for (int i = 0; i != 3; ++i)
        gate.LetGo();
    CHECK(test.listener.Next() == "a.pic 1 done");
    CHECK(test.listener.Next() == "b.pic 2 done");
    while (third.IsLoadBitmapPending())
        std::this_thread::yield();
    CHECK((DibOf(first) == PackedDib(40, 30, 24) && DibOf(third) == PackedDib(7, 7, 1)));
    CHECK((third.GetFilename() == u"c.pic"_w && copy.GetFilename().empty()));
}

TEST_CASE("whoever destroys a picture, or gives it another, takes its queued requests back") {
    Case test;
    Gate gate(test.recording);
    XPDib first, assigned, last, other;
    REQUIRE(other.CreateBitmap({3, 3}, 8));
    auto destroyed = std::make_unique<XPDib>(), shared = std::make_unique<XPDib>();
    test.Load(first, test.path[0], 1);
    gate.WaitForLoad();
    for (XPDib* const picture : {destroyed.get(), &assigned, shared.get(), destroyed.get()})
        test.Load(*picture, test.path[1], 2);
    test.Load(last, test.path[2], 3);
    const XPDib copy(*shared);
    CHECK(copy.IsLoadBitmapPending());
    destroyed.reset();
    shared.reset();
    assigned = other;
    CHECK_FALSE((assigned.IsLoadBitmapPending() || copy.IsLoadBitmapPending() || assigned.IsEmpty()));
    gate.LetGo();
    gate.LetGo();
    CHECK(test.listener.Next() == "a.pic 1 done");
    CHECK(test.listener.Next() == "c.pic 3 done");
    CHECK(copy.IsEmpty());
}

TEST_CASE("destroying a picture waits for the load of it that runs, unless a copy keeps the record") {
    Case test;
    Gate gate(test.recording);
    auto picture = std::make_unique<XPDib>(), shared = std::make_unique<XPDib>();
    test.Load(*picture, test.path[0], 1);
    gate.WaitForLoad();
    std::thread opener([&] {
        Sleep(20);
        gate.LetGo();
    });
    picture.reset();
    CHECK(gate.lookedAtResult);
    opener.join();
    CHECK(test.recording->Controls() == 0);

    test.Load(*shared, test.path[1], 2);
    gate.WaitForLoad();
    const XPDib copy(*shared);
    shared.reset();
    CHECK((copy.IsLoadBitmapPending() && copy.IsEmpty()));
    gate.LetGo();
    while (copy.IsLoadBitmapPending())
        std::this_thread::yield();
    CHECK(DibOf(copy) == PackedDib(5, 6, 8));
    // Neither of the two has told anything.
    XPDib last;
    test.Load(last, test.path[2], 3);
    gate.LetGo();
    CHECK(test.listener.Next() == "c.pic 3 done");
}

TEST_CASE("a picture that is asked twice is pending until both loads are done, and the last one counts") {
    Case test;
    Gate gate(test.recording);
    XPDib picture;
    test.Load(picture, test.path[0], 1);
    gate.WaitForLoad();
    test.Load(picture, test.folder.Path("bad.pic"), 2);
    bool wasPending = false;
    test.listener.atEnd = [&](XPDib* of) { wasPending = of->IsLoadBitmapPending(); };
    gate.LetGo();
    gate.WaitForLoad();
    CHECK(test.listener.Next() == "a.pic 1 done");
    CHECK((wasPending && picture.IsLoadBitmapPending() && picture.IsEmpty()));
    gate.LetGo();
    CHECK(test.listener.Next() == "bad.pic 2 X 3");
    CHECK((!wasPending && picture.IsEmpty() && picture.GetFilename().empty()));
}

TEST_CASE("who is told may destroy the picture and ask for other loads") {
    Case test;
    auto* const picture = new XPDib;
    XPDib next;
    test.listener.atEnd = [&](XPDib* of) {
        test.listener.atEnd = nullptr;
        delete of;
        test.Load(next, test.path[1], 2);
    };
    test.Load(*picture, test.path[0], 1);
    CHECK(test.listener.Next() == "a.pic 1 done");
    CHECK(test.listener.Next() == "b.pic 2 done");
    CHECK(DibOf(next) == PackedDib(5, 6, 8));
}

TEST_CASE("a picture whose control cannot be set up is not queued") {
    Case test;
    XPDib picture;
    test.recording->Order(26, 1, E_FAIL);
    CHECK(Thrown([&] { test.Load(picture, test.path[0], 1); }) == "E 80004005");
    CHECK_FALSE(picture.IsLoadBitmapPending());
}
