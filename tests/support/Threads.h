#pragma once

namespace kel::test {

/// Threads of this process beside those it began with, 0 where nobody counts them.
int ExtraThreads();

/// Waits until there are none, for ten seconds at most: a thread is still seen for a moment after its last work.
/// @return whether that came to be; true where nobody counts.
bool ExtraThreadsEnd();

/// The nice value of the calling thread; @p otherwise where there are none or the user may not set them freely.
int NiceValueOr(int otherwise);

} // namespace kel::test
