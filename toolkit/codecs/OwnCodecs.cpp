// The kinds of a module that is built without third-party libraries.

#include "toolkit/codecs/Bmp.h"

namespace kel::toolkit {

std::span<const Codec* const> Codecs() {
    static constexpr const Codec* kCodecs[] = {&kBmpCodec};
    return kCodecs;
}

} // namespace kel::toolkit
