// One kind of picture file, see pictures.h.

#include "toolkit/codecs/Bmp.h"
#include "fuzz/pictures.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzCodec(kel::toolkit::kBmpCodec, data, size);
    return 0;
}
