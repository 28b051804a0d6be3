#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "ftp/ftp_client.h"
#include "ftp/server_address.h"
#include "platform/curl/ftp_limits.h"
#include "platform/curl/link.h"
#include "platform/curl/reply_reader.h"
#include "platform/curl/tether.h"
#include "platform/curl/tls.h"
#include "platform/curl/trust_store.h"

namespace tavlo::platform {

/// The connection on which a server takes commands and answers them. Once it is lost it stays so.
/// On one thread.
class ControlConnection {
 public:
  ControlConnection(const FtpLimits& limits, Tether& tether) : limits_(limits), tether_(tether) {}

  /// Reaches the server, agrees on protection and reads the greeting. 0, or a failure.
  int Open(const ftp::ServerAddress& server, const TrustStore& trust);
  bool IsOpen() const { return link_.Descriptor() >= 0; }
  /// Why it is not open any more: a failure.
  int Fault() const { return fault_; }
  /// Drops it. What is asked afterwards fails with `fault`.
  void Close(int fault);

  /// Sends a command and waits for its answer. Nothing: the connection is lost. An answer that the
  /// server says good-bye with is one of those, too.
  std::optional<ServerReply> Ask(std::string command);
  /// The same for an answer that is to come still.
  std::optional<ServerReply> AwaitReply();
  /// Reads what has come, without a wait. False when the connection is lost.
  bool Look();
  /// Whether an answer, or a part of it, has been read already.
  bool HasNews() const { return !unread_.empty() || replies_.IsAmid(); }
  /// Sends a command whose answer nobody waits for.
  void Tell(std::string command);

  int Descriptor() const { return link_.Descriptor(); }
  /// With whom connections for data agree on TLS; null when nothing is protected.
  TlsParty* Party() const { return party_.get(); }

 private:
  int Greet();
  int AskForTls();
  int Protect() { return link_.Protect(*party_, In(limits_.connect), tether_); }
  /// 0 with an answer, or why there is none.
  int Read(Deadline deadline, ServerReply& reply);
  /// Answers that nobody asked for: a server that says good-bye does so before.
  bool DropWhatIsUnasked();

  const FtpLimits limits_;
  Tether& tether_;
  std::unique_ptr<TlsParty> party_;
  Link link_;
  ReplyReader replies_;
  std::string unread_;  ///< What came behind the answer that was read last.
  int fault_ = ftp::FtpClient::kNotConnected;
};

}  // namespace tavlo::platform
