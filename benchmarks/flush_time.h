#pragma once

namespace tavlo::bench {

/// Seconds that all threads of this process have waited for the disk so far, in the calls that
/// flush a file or a folder to it. A program that links this, and exports its symbols, counts the
/// calls of the libraries that it loads, too.
double FlushSeconds();

}  // namespace tavlo::bench
