#include "platform/curl/libraries.h"

#include <curl/curl.h>
#include <openssl/ssl.h>

#include <mutex>

namespace tavlo::platform {

bool MakeLibrariesReady() {
  static std::once_flag once;
  static bool ready = false;
  std::call_once(once, [] {
    // First, since libcurl would have OpenSSL taken down at the end of the process.
    ready = ::OPENSSL_init_ssl(OPENSSL_INIT_NO_ATEXIT, nullptr) == 1 &&
            ::curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
  });
  return ready;
}

}  // namespace tavlo::platform
