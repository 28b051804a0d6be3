#include "platform/curl/link.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <openssl/x509_vfy.h>
#include <poll.h>
#include <sys/socket.h>

#include <cerrno>
#include <utility>

#include "platform/curl/ftp_failures.h"

namespace tavlo::platform {
namespace {

using How = Link::Received::How;

/// Routers on the way forget a connection on which nothing passes, such as that for commands while
/// a long file comes.
constexpr int kSecondsUntilALifeSign = 60;

/// No program that we start shall have it.
curl_socket_t OpenSocket(void*, curlsocktype, curl_sockaddr* address) {
  return ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
}

/// The one that stands already; a second one there is not.
curl_socket_t TakeSocket(void* socket, curlsocktype, curl_sockaddr*) {
  return std::exchange(*static_cast<int*>(socket), CURL_SOCKET_BAD);
}

int SayItIsConnected(void*, curl_socket_t, curlsocktype) { return CURL_SOCKOPT_ALREADY_CONNECTED; }

int EndWhenCut(void* tether, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
  return static_cast<Tether*>(tether)->IsCut() ? 1 : 0;
}

std::string UrlOf(const ftp::ServerAddress& server, std::string_view scheme) {
  const bool bare = server.host.find(':') != server.host.npos;
  return std::string(scheme) + "://" + (bare ? "[" : "") + server.host + (bare ? "]" : "") + ":" +
         std::to_string(server.port) + "/";
}

/// All that makes a connection and nothing besides: no request, no proxy, no file of passwords.
/// The schemes are those that say nothing by themselves once they are connected.
EasyHandle MakeConnection(const LogIn& logIn, const char* scheme, Tether& tether) {
  EasyHandle easy = MakeEasyHandle();
  if (!easy) return easy;
  CURL* const handle = easy.get();
  ::curl_easy_setopt(handle, CURLOPT_URL, UrlOf(logIn.server, scheme).c_str());
  ::curl_easy_setopt(handle, CURLOPT_PROTOCOLS_STR, scheme);
  ::curl_easy_setopt(handle, CURLOPT_CONNECT_ONLY, 1L);
  ::curl_easy_setopt(handle, CURLOPT_PROXY, "");
  ::curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
  ::curl_easy_setopt(handle, CURLOPT_CONNECTTIMEOUT_MS,
                     static_cast<long>(logIn.connectLimit.count()));
  ::curl_easy_setopt(handle, CURLOPT_NOPROGRESS, 0L);
  ::curl_easy_setopt(handle, CURLOPT_XFERINFOFUNCTION, EndWhenCut);
  ::curl_easy_setopt(handle, CURLOPT_XFERINFODATA, &tether);
  // A name server that is silent is left to its own thread.
  ::curl_easy_setopt(handle, CURLOPT_QUICK_EXIT, 1L);
  return easy;
}

void Trust(CURL* handle, const TrustStore& store) {
  ::curl_easy_setopt(handle, CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
  ::curl_easy_setopt(handle, CURLOPT_SSL_VERIFYPEER, 1L);
  ::curl_easy_setopt(handle, CURLOPT_SSL_VERIFYHOST, 2L);
  ::curl_easy_setopt(handle, CURLOPT_SSL_ENABLE_ALPN, 0L);
  if (!store.file.empty()) {
    ::curl_easy_setopt(handle, CURLOPT_CAINFO, store.file.c_str());
    ::curl_easy_setopt(handle, CURLOPT_CAPATH, nullptr);
  } else if (::curl_version_info(CURLVERSION_NOW)->capath != nullptr) {
    // The folder is looked into for what is asked; the file would be read whole for each
    // connection, which takes longer than a small document.
    ::curl_easy_setopt(handle, CURLOPT_CAINFO, nullptr);
  }
}

int FailureOfDial(CURLcode code) {
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

int FailureOfCertificate(long verified) {
  switch (verified) {
    case X509_V_ERR_CERT_HAS_EXPIRED:
      return kCertificateExpired;
    case X509_V_ERR_CERT_NOT_YET_VALID:
      return kCertificateEarly;
    case X509_V_ERR_DEPTH_ZERO_SELF_SIGNED_CERT:
      return kCertificateOwn;
    case X509_V_OK:
    case X509_V_ERR_HOSTNAME_MISMATCH:
    case X509_V_ERR_IP_ADDRESS_MISMATCH:
      return kCertificateOfOther;
    default:
      return kCertificateForeign;
  }
}

int FailureOfProtection(CURL* handle, CURLcode code) {
  long verified = X509_V_OK;
  switch (code) {
    case CURLE_OK:
      return 0;
    case CURLE_PEER_FAILED_VERIFICATION:
      ::curl_easy_getinfo(handle, CURLINFO_SSL_VERIFYRESULT, &verified);
      return FailureOfCertificate(verified);
    case CURLE_SSL_CACERT_BADFILE:
      return kNoTrustStore;
    case CURLE_OPERATION_TIMEDOUT:
    case CURLE_ABORTED_BY_CALLBACK:
      return kStalled;
    case CURLE_OUT_OF_MEMORY:
      return kProcessInTrouble;
    default:
      return kNoProtection;
  }
}

void StayAlive(int socket) {
  const int on = 1;
  const int seconds = kSecondsUntilALifeSign;
  ::setsockopt(socket, SOL_SOCKET, SO_KEEPALIVE, &on, sizeof on);
  ::setsockopt(socket, IPPROTO_TCP, TCP_KEEPIDLE, &seconds, sizeof seconds);
}

}  // namespace

int Link::Dial(const LogIn& logIn, Tether& tether) {
  tether.GiveSign();
  const EasyHandle easy = MakeConnection(logIn, "http", tether);
  if (!easy) return kProcessInTrouble;
  ::curl_easy_setopt(easy.get(), CURLOPT_OPENSOCKETFUNCTION, OpenSocket);
  if (const int failure = FailureOfDial(::curl_easy_perform(easy.get()))) return failure;
  curl_socket_t socket = CURL_SOCKET_BAD;
  ::curl_easy_getinfo(easy.get(), CURLINFO_ACTIVESOCKET, &socket);
  socket_ = SocketHandle(::fcntl(socket, F_DUPFD_CLOEXEC, 0));
  if (!socket_) return kProcessInTrouble;
  StayAlive(socket_.Get());
  return 0;
}

int Link::Protect(const LogIn& logIn, Tether& tether) {
  tether.GiveSign();
  EasyHandle easy = MakeConnection(logIn, "https", tether);
  if (!easy) return kProcessInTrouble;
  CURL* const handle = easy.get();
  Trust(handle, logIn.trust);
  // Each connection says that it goes to the server's port for commands, also one for data: that is
  // what the session of TLS is known by, and many servers want it taken up again.
  ::curl_easy_setopt(handle, CURLOPT_SHARE, logIn.tlsSessions.get());
  tlsSocket_ = socket_.Get();
  int given = socket_.Release();
  ::curl_easy_setopt(handle, CURLOPT_OPENSOCKETFUNCTION, TakeSocket);
  ::curl_easy_setopt(handle, CURLOPT_OPENSOCKETDATA, &given);
  ::curl_easy_setopt(handle, CURLOPT_SOCKOPTFUNCTION, SayItIsConnected);
  // The name is for the certificate; nobody looks for its address again.
  const std::string nowhere =
      logIn.server.host + ":" + std::to_string(logIn.server.port) + ":127.0.0.1";
  curl_slist* const known = ::curl_slist_append(nullptr, nowhere.c_str());
  ::curl_easy_setopt(handle, CURLOPT_RESOLVE, known);
  const CURLcode code = ::curl_easy_perform(handle);
  ::curl_easy_setopt(handle, CURLOPT_RESOLVE, nullptr);
  ::curl_easy_setopt(handle, CURLOPT_OPENSOCKETDATA, nullptr);
  ::curl_slist_free_all(known);
  if (given >= 0) ::close(given);
  const int failure = FailureOfProtection(handle, code);
  if (failure == 0) tls_ = std::move(easy);
  return failure;
}

Link::Received Link::Take(std::span<char> room) const {
  if (tls_) {
    std::size_t count = 0;
    const CURLcode code = ::curl_easy_recv(tls_.get(), room.data(), room.size(), &count);
    if (code == CURLE_AGAIN) return {.how = How::TimedOut};
    if (code != CURLE_OK) return {};
    return {.how = count > 0 ? How::Bytes : How::End, .count = count};
  }
  const ssize_t count = ::recv(socket_.Get(), room.data(), room.size(), MSG_DONTWAIT);
  if (count > 0) return {.how = How::Bytes, .count = static_cast<std::size_t>(count)};
  if (count == 0) return {.how = How::End};
  return {.how = errno == EAGAIN || errno == EINTR ? How::TimedOut : How::Broken};
}

Link::Received Link::Receive(std::span<char> room, Deadline deadline, Tether& tether) {
  while (Descriptor() >= 0 && !tether.IsCut()) {
    const Received received = Take(room);
    if (received.how != How::TimedOut) {
      tether.GiveSign();
      return received;
    }
    const auto waited = tether.Await(Descriptor(), POLLIN, deadline);
    if (waited == Tether::Waited::TimedOut) return received;
  }
  return {};
}

std::ptrdiff_t Link::Give(std::string_view bytes) const {
  if (tls_) {
    std::size_t count = 0;
    const CURLcode code = ::curl_easy_send(tls_.get(), bytes.data(), bytes.size(), &count);
    if (code != CURLE_OK && code != CURLE_AGAIN) return -1;
    return static_cast<std::ptrdiff_t>(count);
  }
  const ssize_t count =
      ::send(socket_.Get(), bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
  if (count < 0) return errno == EAGAIN || errno == EINTR ? 0 : -1;
  return count;
}

bool Link::Send(std::string_view bytes, Deadline deadline, Tether& tether) {
  while (!bytes.empty()) {
    const std::ptrdiff_t given = Descriptor() < 0 || tether.IsCut() ? -1 : Give(bytes);
    if (given < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(given));
    if (given > 0) continue;
    if (tether.Await(Descriptor(), POLLOUT, deadline) != Tether::Waited::Ready) return false;
  }
  return true;
}

void Link::Close() {
  tls_.reset();
  tlsSocket_ = -1;
  socket_ = SocketHandle();
}

}  // namespace tavlo::platform
