#include "platform/curl/link.h"

#include <poll.h>
#include <sys/socket.h>

#include <cerrno>

namespace tavlo::platform {
namespace {

using How = Received::How;

}  // namespace

int Link::Protect(TlsParty& party, Deadline deadline, Tether& tether) {
  tls_ = std::make_unique<TlsChannel>();
  const int failure = tls_->Open(party, socket_.Get(), deadline, tether);
  if (failure != 0) Close();
  return failure;
}

Received Link::Take(std::span<char> room) {
  if (tls_) return tls_->Take(room);
  const ssize_t count = ::recv(socket_.Get(), room.data(), room.size(), MSG_DONTWAIT);
  if (count > 0) return {.how = How::SomeBytes, .count = static_cast<std::size_t>(count)};
  if (count == 0) return {.how = How::End};
  return {.how = errno == EAGAIN || errno == EINTR ? How::TimedOut : How::Broken};
}

Received Link::Receive(std::span<char> room, Deadline deadline, Tether& tether) {
  while (socket_ && !tether.IsCut()) {
    const Received received = Take(room);
    if (received.how != How::TimedOut) {
      tether.GiveSign();
      return received;
    }
    const short events = tls_ ? tls_->Events() : static_cast<short>(POLLIN);
    if (tether.Await(socket_.Get(), events, deadline) == Tether::Waited::TimedOut) return received;
  }
  return {};
}

std::ptrdiff_t Link::Give(std::string_view bytes) {
  if (tls_) return tls_->Give(bytes);
  const ssize_t count =
      ::send(socket_.Get(), bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
  if (count < 0) return errno == EAGAIN || errno == EINTR ? 0 : -1;
  return count;
}

bool Link::Send(std::string_view bytes, Deadline deadline, Tether& tether) {
  while (!bytes.empty()) {
    const std::ptrdiff_t given = !socket_ || tether.IsCut() ? -1 : Give(bytes);
    if (given < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(given));
    if (given > 0) continue;
    const short events = tls_ ? tls_->Events() : static_cast<short>(POLLOUT);
    if (tether.Await(socket_.Get(), events, deadline) != Tether::Waited::Ready) return false;
  }
  return true;
}

void Link::Close() {
  tls_.reset();
  socket_ = SocketHandle();
}

}  // namespace tavlo::platform
