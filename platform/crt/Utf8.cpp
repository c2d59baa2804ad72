#include "platform/crt/Utf8.h"

#include "platform/crt/Utf8Scalar.h"

namespace kel::platform {

Stop EncodeUtf8(EncodeJob& job) {
    return EncodeUtf8Scalar(job);
}

Stop DecodeUtf8(DecodeJob& job) {
    return DecodeUtf8Scalar(job);
}

} // namespace kel::platform
