// One kind of picture file, see pictures.h.

#include "fuzz/pictures.h"
#include "toolkit/codecs/LibraryCodecs.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzCodec(kel::toolkit::kGifCodec, data, size);
    return 0;
}
