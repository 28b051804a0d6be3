#include "platform/curl/tls.h"

#include <arpa/inet.h>
#include <openssl/err.h>
#include <openssl/x509_vfy.h>
#include <openssl/x509v3.h>
#include <poll.h>

#include <utility>

#include "platform/curl/ftp_failures.h"
#include "platform/curl/libraries.h"

namespace tavlo::platform {
namespace {

using How = Received::How;

bool IsAddress(const std::string& host) {
  unsigned char address[sizeof(in6_addr)];
  return ::inet_pton(AF_INET, host.c_str(), address) == 1 ||
         ::inet_pton(AF_INET6, host.c_str(), address) == 1;
}

/// Has the certificate checked against the name or the address.
bool Expect(SSL* connection, const std::string& host) {
  if (IsAddress(host)) {
    return ::X509_VERIFY_PARAM_set1_ip_asc(::SSL_get0_param(connection), host.c_str()) == 1;
  }
  ::SSL_set_hostflags(connection, X509_CHECK_FLAG_NO_PARTIAL_WILDCARDS);
  return ::SSL_set1_host(connection, host.c_str()) == 1 &&
         ::SSL_set_tlsext_host_name(connection, host.c_str()) == 1;
}

int FailureOfCertificate(long verified) {
  switch (verified) {
    case X509_V_ERR_CERT_HAS_EXPIRED:
      return kCertificateExpired;
    case X509_V_ERR_CERT_NOT_YET_VALID:
      return kCertificateEarly;
    case X509_V_ERR_DEPTH_ZERO_SELF_SIGNED_CERT:
      return kCertificateOwn;
    case X509_V_ERR_HOSTNAME_MISMATCH:
    case X509_V_ERR_IP_ADDRESS_MISMATCH:
      return kCertificateOfOther;
    default:
      return kCertificateForeign;
  }
}

}  // namespace

TlsParty::TlsParty(const TrustStore& trust, std::string host) : host_(std::move(host)) {
  MakeLibrariesReady();
  context_.reset(::SSL_CTX_new(::TLS_client_method()));
  if (!context_ || ::SSL_CTX_set_min_proto_version(context_.get(), TLS1_2_VERSION) != 1) {
    fault_ = kProcessInTrouble;
    return;
  }
  ::SSL_CTX_set_verify(context_.get(), SSL_VERIFY_PEER, nullptr);
  const int believed = trust.file.empty()
                           ? ::SSL_CTX_set_default_verify_paths(context_.get())
                           : ::SSL_CTX_load_verify_file(context_.get(), trust.file.c_str());
  if (believed != 1) fault_ = kNoTrustStore;
  ::SSL_CTX_set_session_cache_mode(context_.get(),
                                   SSL_SESS_CACHE_CLIENT | SSL_SESS_CACHE_NO_INTERNAL_STORE);
  ::SSL_CTX_sess_set_new_cb(context_.get(), KeepSession);
}

int TlsParty::KeepSession(SSL* connection, SSL_SESSION* session) {
  static_cast<TlsParty*>(SSL_get_app_data(connection))->session_.reset(session);
  return 1;
}

int TlsChannel::Open(TlsParty& party, int socket, Deadline deadline, Tether& tether) {
  if (party.Fault() != 0) return party.Fault();
  connection_.reset(::SSL_new(party.context_.get()));
  SSL* const connection = connection_.get();
  if (connection == nullptr || ::SSL_set_fd(connection, socket) != 1) return kProcessInTrouble;
  SSL_set_app_data(connection, &party);
  if (!Expect(connection, party.host_)) return kNoProtection;
  if (party.session_) ::SSL_set_session(connection, party.session_.get());
  while (true) {
    ::ERR_clear_error();
    const int result = ::SSL_connect(connection);
    if (result == 1) return 0;
    if (!Waits(result)) return FailureToAgree();
    if (tether.Await(socket, events_, deadline) != Tether::Waited::Ready) {
      broken_ = true;
      return kStalled;
    }
  }
}

TlsChannel::~TlsChannel() {
  // One that is broken has no good-bye, and nobody waits for the other end's.
  ::ERR_clear_error();
  if (connection_ && !broken_) ::SSL_shutdown(connection_.get());
}

bool TlsChannel::Waits(int result) {
  const int error = ::SSL_get_error(connection_.get(), result);
  events_ = error == SSL_ERROR_WANT_WRITE ? POLLOUT : POLLIN;
  const bool waits = error == SSL_ERROR_WANT_READ || error == SSL_ERROR_WANT_WRITE;
  broken_ = broken_ || !(waits || error == SSL_ERROR_ZERO_RETURN);
  return waits;
}

int TlsChannel::FailureToAgree() const {
  const long verified = ::SSL_get_verify_result(connection_.get());
  return verified == X509_V_OK ? kNoProtection : FailureOfCertificate(verified);
}

Received TlsChannel::Take(std::span<char> room) {
  ::ERR_clear_error();
  std::size_t count = 0;
  const int result = ::SSL_read_ex(connection_.get(), room.data(), room.size(), &count);
  if (result == 1) return {.how = How::SomeBytes, .count = count};
  if (Waits(result)) return {.how = How::TimedOut};
  if (::SSL_get_error(connection_.get(), result) == SSL_ERROR_ZERO_RETURN) return {.how = How::End};
  const bool ended = ERR_GET_REASON(::ERR_peek_error()) == SSL_R_UNEXPECTED_EOF_WHILE_READING;
  return {.how = ended ? How::CutShort : How::Broken};
}

std::ptrdiff_t TlsChannel::Give(std::string_view bytes) {
  ::ERR_clear_error();
  std::size_t count = 0;
  const int result = ::SSL_write_ex(connection_.get(), bytes.data(), bytes.size(), &count);
  if (result == 1) return static_cast<std::ptrdiff_t>(count);
  return Waits(result) ? 0 : -1;
}

}  // namespace tavlo::platform
