#pragma once

#include <openssl/ssl.h>

#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "platform/curl/received.h"
#include "platform/curl/tether.h"
#include "platform/curl/trust_store.h"

namespace tavlo::platform {

/// What the protected connections of one log-in have in common: whom they talk to, whose word is
/// believed, and the session of TLS that each takes up from the one before, by which a server knows
/// that a connection for data is of the same client. On one thread; outlives its connections.
class TlsParty {
 public:
  TlsParty(const TrustStore& trust, std::string host);
  TlsParty(const TlsParty&) = delete;

  /// 0, or a failure: there is nobody whose word is believed.
  int Fault() const { return fault_; }

 private:
  friend class TlsChannel;

  struct EndContext {
    void operator()(SSL_CTX* context) const { ::SSL_CTX_free(context); }
  };
  struct EndSession {
    void operator()(SSL_SESSION* session) const { ::SSL_SESSION_free(session); }
  };
  static int KeepSession(SSL* connection, SSL_SESSION* session);

  const std::string host_;
  int fault_ = 0;
  std::unique_ptr<SSL_CTX, EndContext> context_;
  std::unique_ptr<SSL_SESSION, EndSession> session_;  ///< The newest.
};

/// A connection under TLS 1.2 or newer with a server that has proved its name. On one thread.
class TlsChannel {
 public:
  /// Agrees with the other end of a socket, which does not block and stays the caller's. 0, or a
  /// failure.
  int Open(TlsParty& party, int socket, Deadline deadline, Tether& tether);
  /// Says good-bye, as far as that can be said at once.
  ~TlsChannel();
  TlsChannel() = default;
  TlsChannel(const TlsChannel&) = delete;

  /// What can be had now. Nothing there: How::TimedOut, and `Events` to wait for.
  Received Take(std::span<char> room);
  /// How many bytes could be sent now; below 0 when the connection is broken.
  std::ptrdiff_t Give(std::string_view bytes);
  short Events() const { return events_; }

 private:
  struct EndConnection {
    void operator()(SSL* connection) const { ::SSL_free(connection); }
  };
  /// Whether the connection only waits; `Events` says for what.
  bool Waits(int result);
  int FailureToAgree() const;

  std::unique_ptr<SSL, EndConnection> connection_;
  short events_ = 0;
  bool broken_ = false;
};

}  // namespace tavlo::platform
