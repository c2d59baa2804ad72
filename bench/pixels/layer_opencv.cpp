#include "bench/pixels/Drawer.h"

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

namespace {

using namespace kel::bench;

cv::Mat Source(const Scene& s) {
    return cv::Mat(s.height, s.width, CV_8UC(static_cast<int>(s.sourceBytes)), const_cast<Byte*>(s.source));
}

cv::Mat Target(const Scene& s) {
    return cv::Mat(s.toHeight, s.toWidth, CV_8UC(static_cast<int>(s.targetBytes)), s.target);
}

Drawing Stretch(const Scene& scene) {
    cv::Mat target = Target(scene);
    const auto run = [source = Source(scene), target]() mutable {
        cv::resize(source, target, target.size(), 0, 0, cv::INTER_NEAREST);
    };
    return {run, scene.target};
}

Drawing Blend(const Scene& scene) {
    const double share = scene.opacity / 255.0;
    const auto run = [share, source = Source(scene), target = Target(scene)]() mutable {
        cv::addWeighted(source, share, target, 1 - share, 0, target);
    };
    return {run, scene.target};
}

// All but the pixels of the key, whatever their fourth byte.
Drawing DrawKeyed(const Scene& scene) {
    const auto run = [source = Source(scene), target = Target(scene), where = cv::Mat()]() mutable {
        const auto key = [](double fourth) {
            return cv::Scalar(kKey & 0xFF, kKey >> 8 & 0xFF, kKey >> 16 & 0xFF, fourth);
        };
        cv::inRange(source, key(0), key(255), where);
        cv::bitwise_not(where, where);
        source.copyTo(target, where);
    };
    return {run, scene.target};
}

const Enter<Drawer> entered[] = {
    Enter<Drawer>{{"opencv", "stretch", 0, &Stretch}},
    Enter<Drawer>{{"opencv", "blend", 0, &Blend}},
    Enter<Drawer>{{"opencv", "transparent", 0, &DrawKeyed}},
};

} // namespace
