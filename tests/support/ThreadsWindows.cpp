#include "tests/support/Threads.h"

namespace kel::test {

int ExtraThreads() {
    return 0;
}

bool ExtraThreadsEnd() {
    return true;
}

int NiceValueOr(int otherwise) {
    return otherwise;
}

} // namespace kel::test
