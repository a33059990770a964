#pragma once

namespace ostrelle::cli {

// Lets SIGTERM and SIGINT end the program only once the log holds what was logged before them.
// Call it first in main, before any other thread exists: it blocks the signals in this thread,
// and so in every thread started later, and leaves one thread of its own waiting for them. That
// thread flushes the log (an ordinary thread may; a signal handler may not), then ends the
// process by the same signal, so that the parent sees a death by it and a shell reports
// 128 + its number. A signal the program was started with ignored stays ignored.
void flushLogOnTerminationSignals();

}  // namespace ostrelle::cli
