#include "platform/curl/control_connection.h"

#include <poll.h>

#include <array>
#include <utility>

#include "platform/curl/dial.h"
#include "platform/curl/ftp_failures.h"

namespace tavlo::platform {
namespace {

using How = Received::How;

/// The server ends the connection.
constexpr int kGoodBye = 421;
/// The server is not ready yet and will say so when it is.
constexpr int kReadySoon = 120;
constexpr std::chrono::milliseconds kNow{0};

}  // namespace

int ControlConnection::Open(const ftp::ServerAddress& server, const TrustStore& trust) {
  using ftp::Protection;
  SocketHandle socket;
  if (const int failure = Dial(server, limits_.connect, tether_, socket)) return failure;
  link_ = Link(std::move(socket));
  if (server.protection != Protection::None) {
    party_ = std::make_unique<TlsParty>(trust, server.host);
  }
  int failure = server.protection == Protection::ImplicitTls ? Protect() : 0;
  if (failure == 0) failure = Greet();
  if (failure == 0 && server.protection == Protection::ExplicitTls) failure = AskForTls();
  if (failure != 0) Close(failure);
  return failure;
}

int ControlConnection::Greet() {
  const Deadline deadline = In(limits_.greeting);
  ServerReply greeting;
  do {
    const int failure = Read(deadline, greeting);
    if (failure == kStalled) return kNoGreeting;
    if (failure != 0) return failure == kConnectionLost ? kServerBusy : failure;
  } while (greeting.code == kReadySoon);
  if (greeting.IsGood()) return 0;
  return greeting.code >= 400 ? kServerBusy : kNoFtpServer;
}

int ControlConnection::AskForTls() {
  const auto reply = Ask("AUTH TLS");
  if (!reply) return fault_;
  // What came behind the answer came unprotected, so somebody on the way may have put it there.
  if (reply->code != 234 || HasNews()) return kNoProtection;
  return Protect();
}

void ControlConnection::Close(int fault) {
  if (IsOpen()) fault_ = fault;
  link_.Close();
}

std::optional<ServerReply> ControlConnection::Ask(std::string command) {
  if (!DropWhatIsUnasked()) return {};
  command += "\r\n";
  if (!link_.Send(command, In(limits_.silence), tether_)) {
    Close(kConnectionLost);
    return {};
  }
  return AwaitReply();
}

std::optional<ServerReply> ControlConnection::AwaitReply() {
  ServerReply reply;
  int failure = Read(In(limits_.silence), reply);
  if (failure == 0 && reply.code == kGoodBye) failure = kConnectionLost;
  if (failure != 0) {
    Close(failure);
    return {};
  }
  return reply;
}

void ControlConnection::Tell(std::string command) {
  command += "\r\n";
  link_.Send(command, In(limits_.silence), tether_);
}

bool ControlConnection::Look() {
  while (IsOpen()) {
    std::array<char, 4096> room;
    const Received received = link_.Receive(room, In(kNow), tether_);
    if (received.how == How::TimedOut) return true;
    if (received.how != How::SomeBytes || unread_.size() > ReplyReader::kLongestReply) {
      Close(kConnectionLost);
      break;
    }
    unread_.append(room.data(), received.count);
  }
  return false;
}

bool ControlConnection::DropWhatIsUnasked() {
  if (!Look()) return false;
  while (!unread_.empty()) {
    unread_.erase(0, replies_.Take(unread_));
    const auto reply = replies_.Next();
    if (replies_.IsNonsense() || (reply && reply->code == kGoodBye)) {
      Close(kConnectionLost);
      return false;
    }
  }
  return true;
}

int ControlConnection::Read(Deadline deadline, ServerReply& reply) {
  while (true) {
    unread_.erase(0, replies_.Take(unread_));
    if (replies_.IsNonsense()) return kNoFtpServer;
    if (auto next = replies_.Next()) {
      reply = std::move(*next);
      return 0;
    }
    std::array<char, 4096> room;
    const Received received = link_.Receive(room, deadline, tether_);
    if (received.how == How::TimedOut || Deadline::clock::now() >= deadline) return kStalled;
    if (received.how != How::SomeBytes) return kConnectionLost;
    unread_.append(room.data(), received.count);
  }
}

}  // namespace tavlo::platform
