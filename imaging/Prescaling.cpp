#include "imaging/Prescaling.h"

#include "imaging/Blocks.h"
#include "imaging/ToolkitControl.h"

#include <kelcore/bitmap/gdibitmap.h>

#include <cmath>
#include <cstdint>
#include <optional>

namespace kel {
namespace {

struct Job {
    Size picture;
    std::int64_t width; // of the target
    std::int64_t height;
    XSize<double> scale;
    double limit;

    double Pixels() const { return static_cast<double>(std::int64_t{picture.cx} * picture.cy); }
};

using Sides = XSize<double>;

std::optional<Job> JobFor(toolkit::IControl* control, const Rect& target, XSize<double> scale, double limit) {
    const Size picture = SizeOfPicture(control);
    const Job job = {picture, std::int64_t{target.right} - target.left, std::int64_t{target.bottom} - target.top, scale,
                     limit};
    if (!control || !PictureOf(control) || picture.cx == 0 || picture.cy == 0 || job.width <= 0 || job.height <= 0 ||
        !(scale.cx > 0) || !(scale.cy > 0))
        return std::nullopt;
    return job;
}

// The size to resample to; none when the picture is near enough to it. The ratio of the areas counts in whole numbers;
// the largest target's area takes all 64 bits.
std::optional<Sides> Stretched(const Job& job) {
    const std::uint64_t ratio = static_cast<std::uint64_t>(job.width) * static_cast<std::uint64_t>(job.height) /
                                static_cast<std::uint64_t>(std::int64_t{job.picture.cx} * job.picture.cy);
    if (!(static_cast<double>(ratio) < job.limit))
        return std::nullopt;
    return Sides(static_cast<double>(job.width), static_cast<double>(job.height));
}

std::optional<Sides> Fitted(const Job& job) {
    Sides sides(job.picture.cx * job.scale.cx, job.picture.cy * job.scale.cy);
    const auto width = static_cast<double>(job.width);
    const auto height = static_cast<double>(job.height);
    const double factor = sides.cx / sides.cy > width / height ? width / sides.cx : height / sides.cy;
    sides.cx *= factor;
    sides.cy *= factor;
    if (!(sides.cy * sides.cx / job.Pixels() < job.limit))
        return std::nullopt;
    return Sides(std::floor(sides.cx + 0.5), std::floor(sides.cy + 0.5));
}

WORD Side(double side) {
    return static_cast<WORD>(static_cast<std::int64_t>(side));
}

void Resample(toolkit::IControl* control, const Sides& sides) {
    CallToolkit(control, toolkit::ResampleTo, Side(sides.cx), Side(sides.cy));
}

} // namespace

bool PrescaleToFit(toolkit::IControl* control, const Rect& target, XSize<double> scale, double limit) {
    const std::optional<Job> job = JobFor(control, target, scale, limit);
    if (!job)
        return false;
    if (const auto sides = Fitted(*job))
        Resample(control, *sides);
    return true;
}

} // namespace kel

bool XPDib::Prescale(const Rect& target, BM_Mode mode, XSize<double> scale, double limit) {
    return !m_pRef->loadPending && Prescale_internal(target, mode, scale, limit);
}

bool XPDib::Prescale_internal(const Rect& target, BM_Mode mode, XSize<double> scale, double limit) {
    const auto job = kel::JobFor(m_pRef->control, target, scale, limit);
    if (!job)
        return false;
    if (mode != BM_Stretch && mode != BM_Fit)
        return PrescaleByRendering(target, mode, scale, limit);
    if (const auto sides = mode == BM_Fit ? kel::Fitted(*job) : kel::Stretched(*job)) {
        Detach();
        kel::Resample(m_pRef->control, *sides);
    }
    return true;
}

bool XPDib::PrescaleByRendering(const Rect& target, BM_Mode mode, XSize<double> scale, double limit) {
    const GDIBitmap rendering = GDIBitmap::CreatePrescaledBmp(*this, target, mode, scale, limit);
    if (rendering.IsEmpty())
        return false;
    kel::OwnedBlock block(rendering.GetDibClone());
    if (!block.Get())
        return false;
    SetEmpty();
    return Detach() && TakeBlock(block);
}
