#include "ftp/tapped_door.h"

#include <poll.h>
#include <sys/socket.h>

#include <utility>
#include <vector>

namespace tavlo::test {

TappedDoor::TappedDoor(std::function<Socket()> open)
    : open_(std::move(open)), thread_([this] { Run(); }) {}

void TappedDoor::Shut() {
  end_.Open();
  if (thread_.joinable()) thread_.join();
  listening_.Close();
}

std::string TappedDoor::Heard() const {
  const std::lock_guard lock(mutex_);
  return heard_;
}

void TappedDoor::Run() {
  std::list<Guest> guests;
  while (true) {
    std::vector<pollfd> news{{.fd = end_.Descriptor(), .events = POLLIN, .revents = 0},
                             {.fd = listening_.Handle(), .events = POLLIN, .revents = 0}};
    for (const Guest& guest : guests) {
      news.push_back({.fd = guest.outside.Handle(), .events = POLLIN, .revents = 0});
      news.push_back({.fd = guest.inside.Handle(), .events = POLLIN, .revents = 0});
    }
    ::poll(news.data(), news.size(), -1);
    if (news[0].revents != 0) return;
    auto next = news.begin() + 2;
    for (auto guest = guests.begin(); guest != guests.end();) {
      const bool said = next++->revents != 0;
      const bool told = next++->revents != 0;
      const bool stays = (!said || Pass(guest->outside, guest->inside, &heard_)) &&
                         (!told || Pass(guest->inside, guest->outside, nullptr));
      guest = stays ? std::next(guest) : guests.erase(guest);
    }
    if (news[1].revents == 0) continue;
    Guest guest{Accept(listening_), open_()};
    if (guest.inside.IsOpen()) guests.push_back(std::move(guest));
  }
}

bool TappedDoor::Pass(const Socket& from, const Socket& to, std::string* kept) {
  char bytes[16 * 1024];
  const ssize_t got = ::recv(from.Handle(), bytes, sizeof bytes, 0);
  if (got <= 0) return false;
  const std::string_view said(bytes, static_cast<std::size_t>(got));
  if (kept != nullptr) {
    const std::lock_guard lock(mutex_);
    *kept += said;
  }
  return SendAll(to, said);
}

}  // namespace tavlo::test
