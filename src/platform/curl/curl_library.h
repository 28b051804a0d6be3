#pragma once

#include <curl/curl.h>

#include <memory>

namespace tavlo::platform {

struct EndEasyHandle {
  void operator()(CURL* handle) const { ::curl_easy_cleanup(handle); }
};
/// One connection of libcurl, closed when it goes out of scope.
using EasyHandle = std::unique_ptr<CURL, EndEasyHandle>;

/// A new one; null when there is no memory. Makes the library ready when it is the first. On any
/// thread, and used on that one.
EasyHandle MakeEasyHandle();

struct EndShareHandle {
  void operator()(CURLSH* handle) const { ::curl_share_cleanup(handle); }
};
/// What protected connections to one server agree on, so that the next is known to belong to them.
/// Used on one thread; must outlive its connections.
using ShareHandle = std::unique_ptr<CURLSH, EndShareHandle>;

/// A new one for TLS sessions; null when there is no memory.
ShareHandle ShareTlsSessions();

}  // namespace tavlo::platform
