#include "platform/curl/dial.h"

#include <curl/curl.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <memory>
#include <string>

#include "platform/curl/ftp_failures.h"
#include "platform/curl/libraries.h"

namespace tavlo::platform {
namespace {

struct EndHandle {
  void operator()(CURL* handle) const { ::curl_easy_cleanup(handle); }
};
using Handle = std::unique_ptr<CURL, EndHandle>;

/// Routers on the way forget a connection on which nothing passes, such as that for commands while
/// a long file comes.
constexpr int kSecondsUntilALifeSign = 60;

Handle MakeHandle() { return Handle(MakeLibrariesReady() ? ::curl_easy_init() : nullptr); }

/// No program that we start shall have it.
curl_socket_t OpenSocket(void*, curlsocktype, curl_sockaddr* address) {
  return ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
}

int EndWhenCut(void* tether, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
  return static_cast<Tether*>(tether)->IsCut() ? 1 : 0;
}

/// Of the schemes this one says nothing by itself once it is connected.
std::string UrlOf(const ftp::ServerAddress& server) {
  const bool bare = server.host.find(':') != server.host.npos;
  const std::string host = bare ? "[" + server.host + "]" : server.host;
  return "http://" + host + ":" + std::to_string(server.port) + "/";
}

int FailureOf(CURLcode code) {
  switch (code) {
    case CURLE_OK:
      return 0;
    case CURLE_URL_MALFORMAT:
      return kNoAddress;
    case CURLE_COULDNT_RESOLVE_HOST:
      return kUnknownServer;
    case CURLE_OUT_OF_MEMORY:
    case CURLE_FAILED_INIT:
      return kProcessInTrouble;
    default:
      return kOutOfReach;
  }
}

void StayAlive(int socket) {
  const int on = 1;
  const int seconds = kSecondsUntilALifeSign;
  ::setsockopt(socket, SOL_SOCKET, SO_KEEPALIVE, &on, sizeof on);
  ::setsockopt(socket, IPPROTO_TCP, TCP_KEEPIDLE, &seconds, sizeof seconds);
}

}  // namespace

int Dial(const ftp::ServerAddress& server, std::chrono::milliseconds limit, Tether& tether,
         SocketHandle& socket) {
  tether.GiveSign();
  const Handle owned = MakeHandle();
  CURL* const handle = owned.get();
  if (handle == nullptr) return kProcessInTrouble;
  ::curl_easy_setopt(handle, CURLOPT_URL, UrlOf(server).c_str());
  ::curl_easy_setopt(handle, CURLOPT_PROTOCOLS_STR, "http");
  ::curl_easy_setopt(handle, CURLOPT_CONNECT_ONLY, 1L);
  // Nothing that stands in the environment leads elsewhere.
  ::curl_easy_setopt(handle, CURLOPT_PROXY, "");
  ::curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
  ::curl_easy_setopt(handle, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(limit.count()));
  ::curl_easy_setopt(handle, CURLOPT_NOPROGRESS, 0L);
  ::curl_easy_setopt(handle, CURLOPT_XFERINFOFUNCTION, EndWhenCut);
  ::curl_easy_setopt(handle, CURLOPT_XFERINFODATA, &tether);
  ::curl_easy_setopt(handle, CURLOPT_OPENSOCKETFUNCTION, OpenSocket);
  // A name server that is silent is left to a thread of the library.
  ::curl_easy_setopt(handle, CURLOPT_QUICK_EXIT, 1L);
  if (const int failure = FailureOf(::curl_easy_perform(handle))) return failure;
  curl_socket_t connected = CURL_SOCKET_BAD;
  ::curl_easy_getinfo(handle, CURLINFO_ACTIVESOCKET, &connected);
  socket = SocketHandle(::fcntl(connected, F_DUPFD_CLOEXEC, 0));
  if (!socket) return kProcessInTrouble;
  StayAlive(socket.Get());
  return 0;
}

}  // namespace tavlo::platform
