#include "support/silent_bus.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstddef>

namespace tavlo::test {
namespace {

/// Calls `use` with the socket address of that name.
template <typename Use>
int WithAddress(const std::string& name, Use use) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  name.copy(address.sun_path, sizeof address.sun_path - 1);
  const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size());
  return use(reinterpret_cast<const sockaddr*>(&address), length);
}

}  // namespace

SilentBus::SilentBus(const std::string& name, int waiting)
    : name_(name), door_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  EXPECT_EQ(WithAddress(name_, [&](auto... address) { return ::bind(door_, address...); }), 0);
  EXPECT_EQ(::listen(door_, waiting), 0);
}

SilentBus::~SilentBus() {
  HangUp();
  ::close(door_);
}

bool SilentBus::Connect(int socket) const {
  return WithAddress(name_, [&](auto... address) { return ::connect(socket, address...); }) == 0;
}

void SilentBus::Answer(const std::string& words) {
  const int guest = ::accept4(door_, nullptr, nullptr, SOCK_CLOEXEC);
  guests_.push_back(guest);
  char greeting[256];
  EXPECT_GT(::read(guest, greeting, sizeof greeting), 0);
  // Whoever lost patience has gone by now.
  ::send(guest, words.data(), words.size(), MSG_NOSIGNAL);
}

void SilentBus::GoOn(const std::string& bytes) {
  char said[1024];
  [[maybe_unused]] const ssize_t length = ::read(guests_.back(), said, sizeof said);
  ::send(guests_.back(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
}

void SilentBus::HangUp() {
  for (const int guest : guests_) ::close(guest);
  guests_.clear();
}

}  // namespace tavlo::test
