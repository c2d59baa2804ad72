#include "imaging/LoadQueue.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <deque>
#include <random>

namespace {

using kel::LoadQueue;
using kel::LoadRequest;
using kel::PictureRecord;

struct NoNotifier : LoadBitmapDeferredNotifier {
    void OnBitmapLoaded(const WideString&, XPDib*, unsigned int) override {}
    void OnBitmapLoadFailed(const WideString&, XPDib*, XPDib::XPException, unsigned int) override {}
};

NoNotifier g_notifier;

bool Append(LoadQueue& queue, XPDib& picture, PictureRecord& record, unsigned int number) {
    std::list<LoadRequest> request;
    request.push_back({&picture, &record, WideString(), Rect(), number, &g_notifier});
    return queue.Append(request);
}

// What the queue should do, in the simplest words. Request 0 of @p requests is the served one while there is one.
struct Model {
    struct Request {
        int picture;
        int record;
        unsigned int number;
        bool told;
    };
    std::deque<Request> requests;
    bool serving = false;

    bool IsPending(int record) const {
        return std::any_of(requests.begin(), requests.end(), [&](const Request& r) { return r.record == record; });
    }
    template <class Matches>
    void Drop(Matches matches) {
        if (serving && matches(requests.front()))
            requests.front().told = false;
        const auto waiting = requests.begin() + (serving ? 1 : 0);
        requests.erase(std::remove_if(waiting, requests.end(), matches), requests.end());
    }
};

} // namespace

TEST_CASE("the loader's end and its start agree") {
    LoadQueue queue;
    XPDib picture;
    PictureRecord record;
    CHECK(Append(queue, picture, record, 1));
    CHECK_FALSE(Append(queue, picture, record, 2)); // the loader is on its way
    queue.LoaderFailed();
    CHECK(Append(queue, picture, record, 3));
    for (unsigned int number = 1; number != 4; ++number) {
        CHECK(queue.Next()->userValue == number);
        CHECK(record.loadPending);
        queue.Finish();
    }
    CHECK_FALSE(record.loadPending);
    CHECK_FALSE(Append(queue, picture, record, 4)); // it will look once more
    queue.Next();
    queue.Finish();
    CHECK(queue.Next() == nullptr);
    CHECK(Append(queue, picture, record, 5));
    queue.DropWaiting();
    CHECK_FALSE(record.loadPending);
    CHECK(queue.Next() == nullptr);
}

TEST_CASE("a later load takes an earlier one's file name away") {
    LoadQueue queue;
    XPDib picture;
    PictureRecord record;
    Append(queue, picture, record, 1);
    Append(queue, picture, record, 2);
    queue.Next();
    queue.SetFileName(WideString(3, 'a'));
    queue.Finish();
    CHECK(record.fileName.size() == 3);
    queue.Next();
    CHECK(record.fileName.empty());
    queue.Finish();
}

TEST_CASE("requests are served in order, dropped by picture or record, and a record is pending while it has one") {
    constexpr int kPictures = 3;
    constexpr int kRecords = 3;
    constexpr unsigned int kSeed = 20240607;
    CAPTURE(kSeed);
    std::mt19937 random(kSeed);
    LoadQueue queue;
    XPDib pictures[kPictures];
    PictureRecord records[kRecords];
    Model model;
    for (unsigned int step = 0; step != 20000; ++step) {
        CAPTURE(step);
        const int picture = static_cast<int>(random() % kPictures);
        const int record = static_cast<int>(random() % kRecords);
        switch (random() % 8) {
        case 0:
            queue.Drop(pictures[picture], records[record]);
            model.Drop([&](const auto& r) { return r.picture == picture && r.record == record; });
            break;
        case 1:
            queue.DropAll(records[record]);
            model.Drop([&](const auto& r) { return r.record == record; });
            break;
        case 2:
        case 3:
        case 4:
            Append(queue, pictures[picture], records[record], step);
            model.requests.push_back({picture, record, step, true});
            break;
        default:
            if (model.serving) {
                const LoadRequest done = queue.Finish();
                const Model::Request expected = model.requests.front();
                model.requests.pop_front();
                REQUIRE(done.userValue == expected.number);
                REQUIRE((done.notifier != nullptr) == expected.told);
                model.serving = false;
            } else {
                const LoadRequest* const next = queue.Next();
                model.serving = !model.requests.empty();
                REQUIRE((next != nullptr) == model.serving);
            }
        }
        for (int i = 0; i != kRecords; ++i)
            REQUIRE(records[i].loadPending == model.IsPending(i));
    }
}
