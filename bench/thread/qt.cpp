#include "bench/thread/Runner.h"

#include <QThread>

namespace {

using namespace kel::bench;

class Job final : public QThread {
    void run() override { CountJob(); }
};

Call StartAndWait() {
    const auto job = std::make_shared<Job>();
    return Jobs([job] {
        job->start();
        return job->wait();
    });
}

const Enter<Runner> entered{{"qt", &StartAndWait}};

} // namespace
