#include "platform/bus/bus_connection.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/bus/bus_wakening.h"

namespace tavlo::platform {
namespace {

using base::operator""ms;

/// What is taken before everything else of the loop has its turn again. A key of the desktop sends
/// one message; a program that looks at everything sends a dozen.
constexpr int kMostMessages = 16;
constexpr base::Duration kMostTime = 4ms;

/// Cuts the text up to the separator off its front; all of it where there is none.
std::string_view CutOff(std::string_view& text, char separator) {
  const std::string_view part = text.substr(0, text.find(separator));
  text.remove_prefix(std::min(part.size() + 1, text.size()));
  return part;
}

void AppendTo(std::string& list, char separator, std::string_view part) {
  if (!list.empty()) list += separator;
  list += part;
}

/// Of several addresses those that a socket of this machine is behind. The number that tells one
/// bus from the next is left out, since whichever comes back there is welcome.
std::string SocketsOf(std::string_view addresses) {
  std::string sockets;
  while (!addresses.empty()) {
    std::string_view address = CutOff(addresses, ';');
    if (!address.starts_with("unix:")) continue;
    std::string socket;
    while (!address.empty()) {
      const std::string_view part = CutOff(address, ',');
      if (!part.starts_with("guid=")) AppendTo(socket, ',', part);
    }
    AppendTo(sockets, ';', socket);
  }
  return sockets;
}

}  // namespace

struct BusConnection::Parts {
  Parts(base::Loop& onLoop, DescriptorWaits& waits, const std::string& addresses,
        const BusPatience& howPatient)
      : loop(onLoop),
        address(SocketsOf(addresses)),
        patience(howPatient),
        nextTry(patience.firstTry),
        silence(loop, "silent bus", patience.greeting),
        retry(loop, "bus retry", patience.firstTry),
        wakening(loop, waits, [this] { Take(); }) {
    silence.OnTick = [this] { Lose(); };
    retry.OnTick = [this] {
      retry.Stop();
      Connect();
    };
  }
  ~Parts() { Close(); }
  Parts(const Parts&) = delete;

  void Connect();
  void Take();
  /// The bus has greeted.
  void BeginUse();
  void Lose();
  void Close();
  bool IsUser(const BusUser* user) const { return std::ranges::find(users, user) != users.end(); }
  /// Each may detach itself or others meanwhile.
  template <typename Call>
  void TellUsers(const Call& call) {
    for (BusUser* const user : std::vector(users)) {
      if (IsUser(user)) call(*user);
    }
  }

  base::Loop& loop;
  const std::string address;
  const BusPatience patience;
  base::Duration nextTry;
  std::vector<BusUser*> users;
  sd_bus* bus = nullptr;
  bool inUse = false;
  base::Timer silence;
  base::Timer retry;
  BusWakening wakening;
};

void BusConnection::Parts::Connect() {
  if (address.empty()) return;
  const bool begun = sd_bus_new(&bus) >= 0 && sd_bus_set_address(bus, address.c_str()) >= 0 &&
                     sd_bus_set_bus_client(bus, 1) >= 0 && sd_bus_negotiate_fds(bus, 0) >= 0 &&
                     // Otherwise the library would ask the bus about each caller, and wait for it.
                     sd_bus_set_trusted(bus, 1) >= 0 && sd_bus_start(bus) >= 0;
  if (!begun) return Lose();
  silence.Start();
  wakening.Follow(*bus);
}

void BusConnection::Parts::Take() {
  const base::MonotonicTime end = loop.Now() + kMostTime;
  for (int taken = 0; bus && taken < kMostMessages && loop.Now() < end; ++taken) {
    sd_bus* const before = bus;
    const int outcome = sd_bus_process(bus, nullptr);
    // Whoever was called may have been the last to use it.
    if (bus != before) return;
    if (outcome < 0 || sd_bus_is_open(bus) <= 0) return Lose();
    if (!inUse && sd_bus_is_ready(bus) > 0) BeginUse();
    if (outcome == 0 || !bus || BusWakening::IsCongested(*bus)) break;
  }
  if (bus) wakening.Follow(*bus);
}

void BusConnection::Parts::BeginUse() {
  silence.Stop();
  inUse = true;
  nextTry = patience.firstTry;
  TellUsers([this](BusUser& user) {
    if (bus) user.Connected(*bus);
  });
}

void BusConnection::Parts::Lose() {
  Close();
  retry.SetInterval(nextTry);
  retry.Start();
  nextTry = std::min(nextTry * 2, patience.lastTry);
}

void BusConnection::Parts::Close() {
  wakening.Rest();
  silence.Stop();
  retry.Stop();
  sd_bus* const gone = std::exchange(bus, nullptr);
  if (std::exchange(inUse, false)) TellUsers([](BusUser& user) { user.Lost(); });
  sd_bus_close_unref(gone);
}

BusConnection::BusConnection(base::Loop& loop, DescriptorWaits& waits, const std::string& address,
                             const BusPatience& patience)
    : parts_(std::make_unique<Parts>(loop, waits, address, patience)) {}

BusConnection::~BusConnection() = default;

void BusConnection::Attach(BusUser& user) {
  if (parts_->IsUser(&user)) return;
  parts_->users.push_back(&user);
  if (parts_->users.size() == 1) parts_->Connect();
  if (parts_->inUse) Speak([&](sd_bus& bus) { user.Connected(bus); });
}

void BusConnection::Detach(BusUser& user) {
  if (std::erase(parts_->users, &user) > 0 && parts_->users.empty()) {
    parts_->Close();
    parts_->nextTry = parts_->patience.firstTry;
  }
}

void BusConnection::Speak(const std::function<void(sd_bus& bus)>& words) {
  if (!parts_->inUse) return;
  words(*parts_->bus);
  if (parts_->bus) parts_->wakening.Follow(*parts_->bus);
}

void BusConnection::TakeSome() { parts_->Take(); }

bool BusConnection::IsConnected() const { return parts_->inUse; }

bool BusConnection::IsCongested() const {
  return parts_->inUse && BusWakening::IsCongested(*parts_->bus);
}

}  // namespace tavlo::platform
