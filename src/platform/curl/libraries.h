#pragma once

namespace tavlo::platform {

/// Makes libcurl and OpenSSL ready, once for the process, and in a way in which a thread that is
/// left behind may go on to use them while the process ends. False when that fails. On any thread.
bool MakeLibrariesReady();

}  // namespace tavlo::platform
