#include "platform/curl/curl_library.h"

#include <openssl/crypto.h>

#include <mutex>

namespace tavlo::platform {
namespace {

bool MakeReady() {
  static std::once_flag once;
  static bool ready = false;
  std::call_once(once, [] {
    // A thread that is left behind may still use this library when the process ends, and shall not
    // find it taken down.
    ::OPENSSL_init_crypto(OPENSSL_INIT_NO_ATEXIT, nullptr);
    ready = ::curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
  });
  return ready;
}

}  // namespace

EasyHandle MakeEasyHandle() { return EasyHandle(MakeReady() ? ::curl_easy_init() : nullptr); }

ShareHandle ShareTlsSessions() {
  ShareHandle share(MakeReady() ? ::curl_share_init() : nullptr);
  if (share) ::curl_share_setopt(share.get(), CURLSHOPT_SHARE, CURL_LOCK_DATA_SSL_SESSION);
  return share;
}

}  // namespace tavlo::platform
