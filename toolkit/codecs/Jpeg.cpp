#include "toolkit/codecs/LibraryCodecs.h"
#include "toolkit/codecs/LongJump.h"
#include "toolkit/codecs/Orientation.h"
#include "toolkit/codecs/Samples.h"

#include <algorithm>
#include <cstdio>
#include <limits>

#include <jpeglib.h>

#include <jerror.h>

namespace kel::toolkit {
namespace {

// A scan costs a pass over the whole picture while an empty one takes a few bytes of file; encoders make about ten.
constexpr int kMostScans = 200;
constexpr int kExifMarker = JPEG_APP0 + 1;
constexpr unsigned kMarkerBytes = 0xFFFF;

/// Complaints of the library that leave the picture whole: bytes between segments and unexpected claims of headers.
bool IsHarmless(int message) {
    return message == JWRN_EXTRANEOUS_DATA || message == JWRN_JFIF_MAJOR || message == JWRN_ADOBE_XFORM;
}

/// libjpeg's decompressor with handlers that end in a jump.
struct Decompressor {
    jpeg_decompress_struct info = {};
    jpeg_error_mgr errors = {};
    jpeg_progress_mgr progress = {};
    LongJump jump;

    Decompressor() {
        info.err = jpeg_std_error(&errors);
        info.client_data = this;
        errors.error_exit = &OnError;
        errors.emit_message = &OnMessage;
        progress.progress_monitor = &OnProgress;
    }
    Decompressor(const Decompressor&) = delete;
    Decompressor& operator=(const Decompressor&) = delete;
    ~Decompressor() { jpeg_destroy_decompress(&info); }

    static Decompressor& Of(j_common_ptr info) { return *static_cast<Decompressor*>(info->client_data); }

    [[noreturn]] static void OnError(j_common_ptr info) {
        const int message = info->err->msg_code;
        const bool memory = message == JERR_OUT_OF_MEMORY || message == JERR_NO_BACKING_STORE;
        Of(info).jump.Fail(memory ? kOverBudget : kDamaged);
    }

    // Level -1 is data that is wrong; the library would make up the rest of the picture.
    static void OnMessage(j_common_ptr info, int level) {
        if (level < 0 && !IsHarmless(info->err->msg_code))
            Of(info).jump.Fail(kDamaged);
    }

    static void OnProgress(j_common_ptr info) {
        if (Of(info).info.input_scan_number > kMostScans)
            Of(info).jump.Fail(kDamaged);
    }
};

/// Reads up to the first scan. What the library may allocate beside the picture, the coefficients of progressive files
/// first of all, is bounded by what they take for the largest picture.
SHORT ReadHeader(Decompressor& jpeg, const LoadJob& job) {
    constexpr std::uint64_t kMost = std::numeric_limits<long>::max();
    jpeg_decompress_struct& info = jpeg.info;
    jpeg_create_decompress(&info);
    info.progress = &jpeg.progress;
    info.mem->max_memory_to_use = static_cast<long>(std::min(kMost, 3 * job.budget.bytes + Budget::kMegabyte));
    jpeg_mem_src(&info, job.file.data(), job.file.size());
    jpeg_save_markers(&info, kExifMarker, kMarkerBytes);
    return jpeg_read_header(&info, /*require_image*/ TRUE) == JPEG_HEADER_OK ? kLoaded : kDamaged;
}

Orientation OrientationOf(const Decompressor& jpeg) {
    for (jpeg_saved_marker_ptr marker = jpeg.info.marker_list; marker; marker = marker->next)
        if (const Orientation found = ReadOrientation({marker->data, marker->data_length}); !found.IsUpright())
            return found;
    return Orientation();
}

/// Chooses what the library is to deliver. @return the depth of the picture; 0 for what it cannot deliver.
int ChooseOutput(jpeg_decompress_struct& info) {
    switch (info.num_components) {
    case 1:
        info.out_color_space = JCS_GRAYSCALE;
        return 8;
    case 3:
        info.out_color_space = JCS_EXT_BGR;
        return 24;
    case 4:
        info.out_color_space = JCS_CMYK;
        return 24;
    default:
        return 0;
    }
}

/// The rows of greys and colours are decoded where they belong.
void ReadPixels(jpeg_decompress_struct& info, const RowTarget& target, int first, int count) {
    JSAMPROW rows[RowTarget::kStrip];
    for (int i = 0; i < count; ++i)
        rows[i] = target.Row(first + i);
    for (int done = 0; done < count;)
        done += static_cast<int>(jpeg_read_scanlines(&info, rows + done, static_cast<JDIMENSION>(count - done)));
}

/// Those of inks take more room than their pixels and go through @p row.
void ReadInks(jpeg_decompress_struct& info, JSAMPARRAY row, const RowTarget& target, int first, int count) {
    const ConvertRun convert = info.saw_Adobe_marker ? &InvertedCmyk : &Cmyk;
    for (int i = 0; i < count; ++i) {
        jpeg_read_scanlines(&info, row, /*rows*/ 1);
        convert(row[0], target.Row(first + i), info.output_width);
    }
}

SHORT ReadRows(Decompressor& jpeg, RowTarget& target) {
    jpeg_decompress_struct& info = jpeg.info;
    jpeg_start_decompress(&info);
    const JSAMPARRAY inks = info.out_color_space != JCS_CMYK
                                ? nullptr
                                : info.mem->alloc_sarray(reinterpret_cast<j_common_ptr>(&info), JPOOL_IMAGE,
                                                         info.output_width * 4, /*rows*/ 1);
    for (int first = 0; first < target.Rows(); first += RowTarget::kStrip) {
        const int count = std::min(RowTarget::kStrip, target.Rows() - first);
        if (inks)
            ReadInks(info, inks, target, first, count);
        else
            ReadPixels(info, target, first, count);
        target.Finish(first, count);
    }
    jpeg_finish_decompress(&info);
    return kLoaded;
}

bool Sniff(Bytes file) {
    return file.size() >= 3 && file[0] == 0xFF && file[1] == 0xD8 && file[2] == 0xFF;
}

SHORT Load(LoadJob& job) {
    Decompressor jpeg;
    SHORT status = jpeg.jump.Run([&] { return ReadHeader(jpeg, job); });
    if (status != kLoaded)
        return status;
    const Orientation orientation = job.keepOrientation ? Orientation() : OrientationOf(jpeg);
    const int depth = ChooseOutput(jpeg.info);
    if (depth == 0)
        return kDamaged;
    status = MakeTurnedPicture(job, orientation, jpeg.info.image_width, jpeg.info.image_height, depth);
    if (status != kLoaded)
        return status;
    RowTarget target(job.picture, orientation);
    if (!target)
        return kOverBudget;
    if (depth == 8)
        FillGreys(target.Colours().data(), 256);
    status = jpeg.jump.Run([&] { return ReadRows(jpeg, target); });
    job.rowsFingerprint = target.Fingerprint();
    return status;
}

} // namespace

const Codec kJpegCodec = {"JPEG", &Sniff, &Load};

} // namespace kel::toolkit
