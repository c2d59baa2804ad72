// Effects that look at the neighbours of each pixel, over OpenCV's filters.

#include "toolkit/effects/Effect.h"
#include "toolkit/effects/Rework.h"

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>

namespace kel::toolkit::effects {
namespace {

/// The pixels of a wide picture as OpenCV sees them, in the order of the rows in memory.
cv::Mat MatrixOf(const DibLock& picture) {
    const DibLayout& layout = picture.Layout();
    return cv::Mat(layout.height, layout.width, CV_8UC(layout.depth / 8), picture.Pixels().data(), layout.rowBytes);
}

void CopyAlpha(const DibLock& from, const DibLock& to) {
    for (int y = 0; y < to.Layout().height; ++y) {
        const BYTE* source = from.Row(y) + 3;
        BYTE* const row = to.Row(y) + 3;
        for (std::size_t at = 0; at < 4 * static_cast<std::size_t>(to.Layout().width); at += 4)
            row[at] = source[at];
    }
}

using Filter = std::function<void(const cv::Mat& from, cv::Mat to, bool topDown)>;

/// Replaces the colours by what @p filter makes of them; alpha stays.
HRESULT Apply(PackedDib& picture, const Filter& filter) try {
    return Remake(picture, picture.Layout().width, picture.Layout().height,
                  [&](const DibLock& from, const DibLock& to) {
                      filter(MatrixOf(from), MatrixOf(to), from.Layout().topDown);
                      if (from.Layout().depth == 32)
                          CopyAlpha(from, to);
                  });
} catch (const cv::Exception& failure) {
    return failure.code == cv::Error::StsNoMem ? E_OUTOFMEMORY : E_FAIL;
}

cv::Mat Block3x3() {
    return cv::Mat::ones(3, 3, CV_8U);
}

const cv::Point kMiddle(-1, -1);

/// What blurring takes from each value, scaled: by the difference from -255 to 255.
using Shares = std::array<int, 511>;

Shares SharesOf(int percent) {
    Shares shares;
    for (int difference = -255; difference <= 255; ++difference) {
        const int share = (std::abs(difference * percent) + 50) / 100;
        shares[difference + 255] = (difference < 0) != (percent < 0) ? -share : share;
    }
    return shares;
}

/// Moves the blurred row away from, or to, what it was made of.
void MixRow(const BYTE* from, BYTE* blurred, std::size_t count, const Shares& shares) {
    for (std::size_t i = 0; i < count; ++i) {
        const int share = shares[from[i] - blurred[i] + 255];
        blurred[i] = static_cast<BYTE>(std::clamp(from[i] + share, 0, 255));
    }
}

/// @param percent of the difference between a pixel and its surroundings that is added to it.
HRESULT AddDetail(PackedDib& picture, int percent) {
    const Shares shares = SharesOf(percent);
    return Apply(picture, [&shares](const cv::Mat& from, cv::Mat to, bool) {
        cv::GaussianBlur(from, to, cv::Size(5, 5), 0, 0, cv::BORDER_REPLICATE);
        const std::size_t bytes = from.elemSize() * static_cast<std::size_t>(from.cols);
        for (int y = 0; y < from.rows; ++y)
            MixRow(from.ptr(y), to.ptr(y), bytes, shares);
    });
}

} // namespace

HRESULT Emboss(PackedDib& picture) {
    return Apply(picture, [](const cv::Mat& from, cv::Mat to, bool topDown) {
        cv::Mat slope = (cv::Mat_<float>(3, 3) << -1, 0, 0, 0, 0, 0, 0, 0, 1);
        if (!topDown)
            cv::flip(slope, slope, 0);
        cv::filter2D(from, to, -1, slope, kMiddle, 128, cv::BORDER_REPLICATE);
    });
}

HRESULT Erode(PackedDib& picture) {
    return Apply(picture, [](const cv::Mat& from, cv::Mat to, bool) {
        cv::erode(from, to, Block3x3(), kMiddle, 1, cv::BORDER_REPLICATE);
    });
}

HRESULT Outline(PackedDib& picture) {
    return Apply(picture, [](const cv::Mat& from, cv::Mat to, bool) {
        cv::morphologyEx(from, to, cv::MORPH_GRADIENT, Block3x3(), kMiddle, 1, cv::BORDER_REPLICATE);
    });
}

HRESULT Sharpen(PackedDib& picture, SHORT amount) {
    return AddDetail(picture, std::clamp<int>(amount, 0, 100));
}

HRESULT Soften(PackedDib& picture, SHORT amount) {
    return AddDetail(picture, -std::clamp<int>(amount, 0, 100));
}

} // namespace kel::toolkit::effects
