#include "bench/pictures/Resizer.h"

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

namespace {

using namespace kel::bench;

std::function<void()> Prepare(const Scene& scene) {
    cv::setNumThreads(1);
    const cv::Mat from(scene.height, scene.width, CV_8UC(scene.channels), const_cast<unsigned char*>(scene.pixels));
    const cv::Size size(scene.newWidth, scene.newHeight);
    return [=] {
        cv::Mat to;
        cv::resize(from, to, size, 0, 0, cv::INTER_AREA);
        benchmark::DoNotOptimize(to.data);
    };
}

const Enter<Resizer> entered{{"opencv", /*whole factors*/ false, &Prepare}};

} // namespace
