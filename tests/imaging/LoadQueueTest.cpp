#include "imaging/LoadQueue.h"

#include <doctest/doctest.h>

namespace {

using kel::LoadQueue;
using kel::LoadRequest;
using kel::PictureRecord;

bool Append(LoadQueue& queue, XPDib& picture, PictureRecord& record, unsigned int number) {
    std::list<LoadRequest> request;
    request.push_back({&picture, &record, WideString(), Rect(), number, /*notifier*/ nullptr});
    return queue.Append(request);
}

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
