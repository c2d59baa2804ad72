#include "tests/imaging/Recording.h"

#include <atomic>
#include <deque>
#include <memory>
#include <random>
#include <thread>
#include <vector>

// A program of its own: notifications, once stopped, never come back.

using namespace kel::test;

namespace {

constexpr unsigned int kRequests = 6000;

// What became of every request, by its number.
struct Fate {
    std::atomic<int> told{0};
    std::atomic<bool> givenUp{false}; // its picture was destroyed or given another one while it was pending
};

std::deque<Fate> g_fates(2 * kRequests);
std::atomic<unsigned int> g_next{0};
std::atomic<bool> g_stopped{false};
std::atomic<int> g_toldTooLate{0};

// Who is told asks for further loads, into a picture that the loader thread alone uses, and destroys it when it is
// done.
class Listener final : public LoadBitmapDeferredNotifier {
public:
    explicit Listener(const std::vector<String>& files) : m_files(files) {}
    void OnBitmapLoaded(const WideString&, XPDib* picture, unsigned int user) override { End(picture, user); }
    void OnBitmapLoadFailed(const WideString&, XPDib* picture, XPDib::XPException, unsigned int user) override {
        End(picture, user);
    }

    void Ask(XPDib& picture, unsigned int request, std::size_t file) {
        picture.LoadBitmapDeferred(m_files[file % m_files.size()], this, Rect(0, 0, 3, 3), request);
    }

private:
    void End(const XPDib* picture, unsigned int user) {
        ++g_fates[user].told;
        g_toldTooLate += g_stopped;
        if (m_own.get() == picture)
            m_own.reset();
        if (user % 3 == 0 && !m_own && !g_stopped) {
            m_own = std::make_unique<XPDib>();
            const unsigned int request = g_next++;
            Ask(*m_own, request, request);
        }
    }

    const std::vector<String>& m_files;
    std::unique_ptr<XPDib> m_own;
};

// A picture with the numbers of its requests that may be pending.
struct Asked {
    XPDib picture;
    std::vector<unsigned int> requests;
    bool mayShare = false; // then it leaves its record, and its requests, when it is asked again

    void GiveUp() {
        for (const unsigned int request : requests)
            g_fates[request].givenUp = true;
        requests.clear();
    }
    void Wait() {
        while (picture.IsLoadBitmapPending())
            Sleep(1);
        requests.clear();
    }
};

// One thread's pictures, treated at random.
class Client {
public:
    Client(Listener& listener, unsigned int seed) : m_listener(listener), m_random(seed), m_pictures(8) {}

    void Run() {
        while (Ask(Any()))
            Disturb(Any());
        for (Asked& asked : m_pictures)
            asked.Wait();
    }

private:
    Asked& Any() { return m_pictures[m_random() % m_pictures.size()]; }

    bool Ask(Asked& asked) {
        const unsigned int request = g_next++;
        if (request >= kRequests) {
            g_fates[request].givenUp = true; // it was never made
            return false;
        }
        if (asked.mayShare)
            asked.GiveUp();
        asked.requests.push_back(request);
        m_listener.Ask(asked.picture, request, m_random());
        return true;
    }

    void Disturb(Asked& asked) {
        switch (m_random() % 8) {
        case 0:
            asked.GiveUp();
            asked.picture = XPDib();
            break;
        case 1: {
            Asked& other = Any();
            asked.GiveUp();
            asked.picture = other.picture;
            asked.mayShare = other.mayShare = true;
            break;
        }
        case 2:
            asked.Wait();
            asked.picture.SetEmpty();
            break;
        case 3: {
            const XPDib copy(asked.picture);
            static_cast<void>(copy.IsEmpty());
            break;
        }
        default:
            break;
        }
    }

    Listener& m_listener;
    std::mt19937 m_random;
    std::deque<Asked> m_pictures;
};

bool AllAreTold() {
    for (unsigned int request = 0; request != g_next; ++request)
        if (!g_fates[request].givenUp && g_fates[request].told == 0)
            return false;
    return true;
}

void CheckFates() {
    for (int looks = 0; looks != 20000 && !AllAreTold(); ++looks)
        Sleep(1);
    CHECK(AllAreTold());
    for (unsigned int request = 0; request != g_next; ++request)
        REQUIRE(g_fates[request].told <= 1);
}

// One load after the other: each is asked for when the loader has done the one before and may be about to end.
void CheckEndOfLoop(const String& file) {
    XPDib picture;
    for (int load = 0; load != 2000; ++load) {
        picture.LoadBitmapDeferred(file, nullptr, Rect(), 0);
        for (int looks = 0; looks != 20000 && picture.IsLoadBitmapPending(); ++looks)
            Sleep(looks < 1000 ? 0 : 1);
        REQUIRE_FALSE(picture.IsLoadBitmapPending());
    }
}

// Some loads run while notifications are stopped, others come later; all are done, and nobody is told any more.
void CheckStopping(Listener& listener) {
    std::deque<XPDib> pictures(200);
    for (std::size_t i = 0; i != pictures.size(); ++i) {
        listener.Ask(pictures[i], g_next++, i);
        if (i == 100) {
            XPDib::StopLoadBitmapDeferredNotifier();
            g_stopped = true;
        }
    }
    for (const XPDib& picture : pictures)
        while (picture.IsLoadBitmapPending())
            Sleep(1);
    CHECK(g_toldTooLate == 0);
}

} // namespace

TEST_CASE("thousands of loads, given up, repeated and stopped: none is lost, none is told twice or too late") {
    {
        const TempFolder folder;
        const std::vector<String> files = {folder.Write("a.pic", "4x3x24"), folder.Write("b.pic", "9x7x8"),
                                           folder.Write("c.pic", "none"), folder.Write("d.pic", "GIF8")};
        Recording recording;
        recording->BeSilent();
        CheckEndOfLoop(files[0]);
        Listener listener(files);
        std::vector<std::thread> threads;
        for (unsigned int seed = 1; seed <= 3; ++seed)
            threads.emplace_back([&listener, seed] { Client(listener, seed).Run(); });
        for (std::thread& thread : threads)
            thread.join();
        CheckFates();
        CheckStopping(listener);
    }
    // The process ends with loads that wait.
    static auto* const left = new std::deque<XPDib>(100);
    for (XPDib& picture : *left)
        picture.LoadBitmapDeferred(u"C:\\none.pic"_w, nullptr, Rect(), 0);
}
