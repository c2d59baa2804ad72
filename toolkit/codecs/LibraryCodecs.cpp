// The kinds of a module that is built with all libraries.

#include "toolkit/codecs/LibraryCodecs.h"

#include "toolkit/codecs/Bmp.h"

namespace kel::toolkit {

std::span<const Codec* const> Codecs() {
    // Bitmap files come last: two letters are all that tells them.
    static constexpr const Codec* kCodecs[] = {&kJpegCodec, &kPngCodec, &kTiffCodec,
                                               &kWebPCodec, &kGifCodec, &kBmpCodec};
    return kCodecs;
}

} // namespace kel::toolkit
