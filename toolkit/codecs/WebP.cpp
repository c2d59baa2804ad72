#include "toolkit/codecs/LibraryCodecs.h"
#include "toolkit/codecs/Orientation.h"

#include <cstring>

#include <webp/decode.h>
#include <webp/demux.h>

namespace kel::toolkit {
namespace {

struct DeleteDemuxer {
    void operator()(WebPDemuxer* demuxer) const { WebPDemuxDelete(demuxer); }
};
using Demuxer = std::unique_ptr<WebPDemuxer, DeleteDemuxer>;

/// The first picture of a file; pictures of animations may lie anywhere on their canvas.
struct Frame {
    WebPIterator at = {};

    explicit Frame(const Demuxer& demuxer) { WebPDemuxGetFrame(demuxer.get(), /*number*/ 1, &at); }
    Frame(const Frame&) = delete;
    Frame& operator=(const Frame&) = delete;
    ~Frame() { WebPDemuxReleaseIterator(&at); }

    /// Whether it has been found, whole.
    explicit operator bool() const { return at.complete != 0; }
};

struct Chunk {
    WebPChunkIterator at = {};

    Chunk(const Demuxer& demuxer, const char* name) { WebPDemuxGetChunk(demuxer.get(), name, /*number*/ 1, &at); }
    Chunk(const Chunk&) = delete;
    Chunk& operator=(const Chunk&) = delete;
    ~Chunk() { WebPDemuxReleaseChunkIterator(&at); }

    Bytes Content() const { return {at.chunk.bytes, at.chunk.size}; }
};

struct Area {
    int width;
    int height;
};

Area CanvasOf(const Demuxer& demuxer) {
    return {static_cast<int>(WebPDemuxGetI(demuxer.get(), WEBP_FF_CANVAS_WIDTH)),
            static_cast<int>(WebPDemuxGetI(demuxer.get(), WEBP_FF_CANVAS_HEIGHT))};
}

/// Decodes the frame where it belongs on the canvas.
SHORT ReadFrame(const WebPIterator& frame, const DibLock& picture) {
    const bool alpha = picture.Layout().depth == 32;
    WebPDecoderConfig config;
    if (!picture)
        return kOverBudget;
    if (!WebPInitDecoderConfig(&config))
        return kDamaged;
    // The library writes its rows from below when it is told to flip them.
    config.options.flip = 1;
    config.output.colorspace = alpha ? MODE_BGRA : MODE_BGR;
    config.output.is_external_memory = 1;
    WebPRGBABuffer& rows = config.output.u.RGBA;
    const auto pixelBytes = alpha ? std::size_t{4} : std::size_t{3};
    const auto left = static_cast<std::size_t>(frame.x_offset) * pixelBytes;
    rows.rgba = picture.Row(frame.y_offset + frame.height - 1) + left;
    rows.stride = static_cast<int>(picture.Layout().rowBytes);
    rows.size = picture.Layout().rowBytes * static_cast<std::size_t>(frame.height - 1) +
                static_cast<std::size_t>(frame.width) * pixelBytes;
    const VP8StatusCode code = WebPDecode(frame.fragment.bytes, frame.fragment.size, &config);
    WebPFreeDecBuffer(&config.output);
    if (code == VP8_STATUS_OK)
        return kLoaded;
    return code == VP8_STATUS_OUT_OF_MEMORY ? kOverBudget : kDamaged;
}

bool Sniff(Bytes file) {
    return file.size() >= 12 && std::memcmp(file.data(), "RIFF", 4) == 0 &&
           std::memcmp(file.data() + 8, "WEBP", 4) == 0;
}

SHORT Load(LoadJob& job) {
    const WebPData data = {job.file.data(), job.file.size()};
    const Demuxer demuxer(WebPDemux(&data));
    if (!demuxer)
        return kDamaged;
    const Frame frame(demuxer);
    if (!frame)
        return kDamaged;
    const Area canvas = CanvasOf(demuxer);
    const bool covered = frame.at.width == canvas.width && frame.at.height == canvas.height;
    SHORT status = MakePicture(job, canvas.width, canvas.height, frame.at.has_alpha || !covered ? 32 : 24);
    if (status == kLoaded)
        status = ReadFrame(frame.at, DibLock(job.picture));
    return status == kLoaded ? TurnUpright(job, ReadOrientation(Chunk(demuxer, "EXIF").Content())) : status;
}

} // namespace

const Codec kWebPCodec = {"WebP", &Sniff, &Load};

} // namespace kel::toolkit
