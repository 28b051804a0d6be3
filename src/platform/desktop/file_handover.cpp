#include "platform/desktop/file_handover.h"

#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/desktop/handover_message.h"
#include "platform/desktop/handover_sockets.h"

namespace tavlo::platform::desktop {
namespace {

using base::operator""ms;

/// Starts that are listened to at a time; others wait before the door.
constexpr std::size_t kMostGuests = 4;
constexpr base::Duration kBetweenLooksAtGuests = 1000ms;
/// A start has nothing else to do, and somebody waits for it.
constexpr base::Duration kBetweenTries = 10ms;
constexpr std::size_t kBytesOfARead = 65'536;

/// A read or write that would have to wait.
bool MustWait() { return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR; }

/// The end of a start that hands files over.
class HandoverCall {
 public:
  HandoverCall(const std::string& name, std::string message)
      : name_(name), message_(std::move(message)) {}

  /// Goes as far as it can without waiting. True when nothing more is to come.
  bool GoOn() {
    if (!socket_) Connect();
    if (socket_ && !over_) Send();
    if (socket_ && !over_) HearAnswer();
    return over_;
  }

  /// Ends the call: from here on the other end can not answer any more, so each of the two knows
  /// whether it has.
  bool WasTaken() {
    if (socket_ && !over_) {
      ::shutdown(socket_.Get(), SHUT_RD);
      HearAnswer();
    }
    return taken_;
  }

 private:
  void Connect() {
    socket_ = ConnectTo(name_);
    // A stranger under the name is told nothing.
    over_ = socket_ && !IsOfThisUser(socket_);
  }

  void Send() {
    if (left_.empty()) return;
    const ssize_t sent = ::send(socket_.Get(), left_.data(), left_.size(), MSG_NOSIGNAL);
    if (sent < 0) {
      over_ = !MustWait();
      return;
    }
    left_.remove_prefix(static_cast<std::size_t>(sent));
    if (left_.empty()) ::shutdown(socket_.Get(), SHUT_WR);
  }

  void HearAnswer() {
    char answer = 0;
    const ssize_t got = ::recv(socket_.Get(), &answer, 1, 0);
    if (got < 0 && MustWait()) return;
    over_ = true;
    taken_ = got == 1 && answer == kMessageTaken && left_.empty();
  }

  const std::string name_;
  const std::string message_;
  std::string_view left_{message_};
  SocketHandle socket_;
  bool over_ = false;
  bool taken_ = false;
};

}  // namespace

/// Another start, as the deck that runs has it.
class SocketHandover::Guest {
 public:
  Guest(SocketHandle itsSocket, base::MonotonicTime now)
      : socket(std::move(itsSocket)), cameAt(now) {}

  const SocketHandle socket;
  const base::MonotonicTime cameAt;
  std::string message;
  std::unique_ptr<DescriptorWait> wait;  ///< Goes before the socket does.
};

SocketHandover::SocketHandover(base::Loop& loop, DescriptorWaits& waits,
                               const std::string& installRoot, base::Duration patience)
    : loop_(loop),
      waits_(waits),
      name_(HandoverName(installRoot)),
      patience_(patience),
      tmrGuests_(loop, "tmrGuests", kBetweenLooksAtGuests, base::TimerKind::Feed),
      tmrTell_(loop, "tmrTell", kBetweenLooksAtGuests) {
  tmrGuests_.OnTick = [this] { LookAfterGuests(); };
  tmrTell_.OnTick = [this] { Tell(); };
}

SocketHandover::~SocketHandover() = default;

void SocketHandover::Listen(std::function<void(const Paths& paths)> came) {
  came_ = std::move(came);
  listening_ = ListenUnder(name_);
  OpenDoor();
}

void SocketHandover::Close() {
  tmrGuests_.Stop();
  guests_.clear();
  door_.reset();
  listening_ = SocketHandle();
  Tell();
}

/// In breaths, too: a start does not wait until a long list is built.
void SocketHandover::OpenDoor() {
  if (listening_)
    door_ = waits_.WaitInBreathsToo(listening_.Get(), "Handover", [this] { LetIn(); });
}

void SocketHandover::LetIn() {
  SocketHandle socket(::accept4(listening_.Get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
  if (!socket && MustWait()) return;
  // Where the process has no descriptor left, whoever stands before the door would ring for ever.
  if (!socket) return Rest();
  if (!IsOfThisUser(socket)) return;
  Guest& guest = guests_.emplace_back(std::move(socket), loop_.Now());
  guest.wait =
      waits_.WaitInBreathsToo(guest.socket.Get(), "Handover", [this, &guest] { Hear(guest); });
  if (guests_.size() >= kMostGuests) return Rest();
  if (!tmrGuests_.Enabled()) tmrGuests_.Start();
}

void SocketHandover::Rest() {
  door_.reset();
  if (!tmrGuests_.Enabled()) tmrGuests_.Start();
}

void SocketHandover::Hear(Guest& guest) {
  std::array<char, kBytesOfARead> bytes;
  const ssize_t got = ::recv(guest.socket.Get(), bytes.data(), bytes.size(), 0);
  if (got < 0 && MustWait()) return;
  if (got == 0) return Answer(guest);
  const std::size_t size = got < 0 ? 0 : static_cast<std::size_t>(got);
  if (size == 0 || guest.message.size() + size > kMostBytesOfMessage) return Dismiss(guest);
  guest.message.append(bytes.data(), size);
}

void SocketHandover::Answer(Guest& guest) {
  std::optional<Paths> paths = PathsOfMessage(guest.message);
  // Who has given up waiting can not be answered any more, and has told its user so.
  if (paths && ::send(guest.socket.Get(), &kMessageTaken, 1, MSG_NOSIGNAL) == 1) {
    untold_.push_back(*std::move(paths));
    // A rule's timer: this may be a breath.
    tmrTell_.StartDue();
  }
  Dismiss(guest);
}

void SocketHandover::Dismiss(Guest& guest) {
  guests_.remove_if([&guest](const Guest& other) { return &other == &guest; });
  if (!door_) OpenDoor();
}

void SocketHandover::LookAfterGuests() {
  const base::MonotonicTime now = loop_.Now();
  guests_.remove_if([&](const Guest& guest) { return now - guest.cameAt > 2 * patience_; });
  if (guests_.empty()) tmrGuests_.Stop();
  if (!door_ && guests_.size() < kMostGuests) OpenDoor();
}

void SocketHandover::Tell() {
  tmrTell_.Stop();
  for (const Paths& paths : std::exchange(untold_, {})) came_(paths);
}

bool SocketHandover::HandOver(const Paths& paths) {
  HandoverCall call(name_, MessageOf(paths));
  base::Timer tmrTry(loop_, "tmrTry", kBetweenTries, base::TimerKind::Feed);
  tmrTry.OnTick = [] {};
  tmrTry.Start();
  loop_.BreatheUntil([&call] { return call.GoOn(); }, loop_.Now() + patience_);
  return call.WasTaken();
}

}  // namespace tavlo::platform::desktop
