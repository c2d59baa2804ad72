#include "bench/pixels/Painter.h"

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <memory>

namespace {

using namespace kel::bench;
using Runner = std::function<void()>;

// Everything runs on the thread that is timed.
const bool single = (cv::setNumThreads(1), true);

cv::Mat Matrix(const Canvas& canvas, const unsigned char* pixels) {
    return cv::Mat(kHeight, kWidth, CV_8UC(static_cast<int>(canvas.pixelBytes)), const_cast<unsigned char*>(pixels));
}

cv::Scalar ColourOf(std::uint32_t colour, double fourth) {
    return cv::Scalar(colour & 0xFF, colour >> 8 & 0xFF, colour >> 16 & 0xFF, fourth);
}

// The pixels of the colour, whatever their fourth byte.
void Select(const cv::Mat& pixels, std::uint32_t colour, cv::Mat& where) {
    cv::inRange(pixels, ColourOf(colour, 0), ColourOf(colour, 255), where);
}

Runner Tint(Canvas& canvas) {
    cv::Mat target = Matrix(canvas, canvas.target);
    const cv::Mat solid(kHeight, kWidth, target.type(), ColourOf(kTint, 0));
    const double share = canvas.opacity / 255.0;
    return [=]() mutable { cv::addWeighted(solid, share, target, 1 - share, 0, target); };
}

Runner CombineKey(Canvas& canvas) {
    cv::Mat target = Matrix(canvas, canvas.target);
    const cv::Mat source = Matrix(canvas, canvas.source);
    return [=, where = cv::Mat()]() mutable {
        Select(target, kKey, where);
        source.copyTo(target, where);
    };
}

// There and back: weighed channels, no colour kept.
Runner GreyOut(Canvas& canvas) {
    cv::Mat target = Matrix(canvas, canvas.target);
    const bool wide = canvas.pixelBytes == 4;
    return [=, grey = cv::Mat()]() mutable {
        cv::cvtColor(target, grey, wide ? cv::COLOR_BGRA2GRAY : cv::COLOR_BGR2GRAY);
        cv::cvtColor(grey, target, wide ? cv::COLOR_GRAY2BGRA : cv::COLOR_GRAY2BGR);
    };
}

Runner Find(Canvas& canvas) {
    const cv::Mat source = Matrix(canvas, canvas.source);
    return [=, &canvas, where = cv::Mat()]() mutable {
        Select(source, kAbsent, where);
        canvas.found = cv::countNonZero(where) > 0;
    };
}

Runner Invert(Canvas& canvas) {
    cv::Mat target = Matrix(canvas, canvas.target);
    return [=]() mutable { cv::bitwise_not(target, target); };
}

Runner Fill(Canvas& canvas) {
    cv::Mat target = Matrix(canvas, canvas.target);
    return [=]() mutable { target.setTo(cv::Scalar::all(0x5A)); };
}

Runner KeyToAlpha(Canvas& canvas) {
    cv::Mat target = Matrix(canvas, canvas.target);
    return [=, where = cv::Mat()]() mutable {
        Select(target, kKey, where);
        cv::bitwise_or(target, cv::Scalar(0, 0, 0, 0xFF), target);
        target.setTo(cv::Scalar::all(0), where);
    };
}

Runner KeyToOverlay(Canvas& canvas) {
    cv::Mat target = Matrix(canvas, canvas.target);
    return [=, where = cv::Mat()]() mutable {
        Select(target, kKey, where);
        target.setTo(cv::Scalar::all(0));
        target.setTo(ColourOf(kOverlay, kOverlay >> 24), where);
    };
}

// A matrix that owns its pixels, as one that does not counts nothing.
Runner Share(Canvas& canvas) {
    const cv::Mat owner = Matrix(canvas, canvas.target).clone();
    return [=] {
        const cv::Mat copy(owner);
        benchmark::DoNotOptimize(&copy);
    };
}

Runner Clone(Canvas& canvas) {
    const cv::Mat target = Matrix(canvas, canvas.target);
    return [=] { benchmark::DoNotOptimize(target.clone().data); };
}

const Enter<Painter> entered[] = {
    Enter<Painter>{{"opencv", "tint 32", false, &Tint}},
    Enter<Painter>{{"opencv", "colour-key 32", true, &CombineKey}},
    Enter<Painter>{{"opencv", "colour-key 24", true, &CombineKey}},
    Enter<Painter>{{"opencv", "grey-out 32", false, &GreyOut}},
    Enter<Painter>{{"opencv", "grey-out 24", false, &GreyOut}},
    Enter<Painter>{{"opencv", "find a colour 32", true, &Find}},
    Enter<Painter>{{"opencv", "find a colour 24", true, &Find}},
    Enter<Painter>{{"opencv", "invert 32", true, &Invert}},
    Enter<Painter>{{"opencv", "fill 32", true, &Fill}},
    Enter<Painter>{{"opencv", "key to alpha 32", true, &KeyToAlpha}},
    Enter<Painter>{{"opencv", "key to overlay 32", true, &KeyToOverlay}},
    Enter<Painter>{{"opencv", "share 32", true, &Share}},
    Enter<Painter>{{"opencv", "detach 32", true, &Clone}},
};

} // namespace
