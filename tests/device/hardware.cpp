#include "hardware.h"

#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <new>
#include <span>
#include <sstream>

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kOwnRules = "/run/udev/rules.d/70-tavlo-deck-pedals.rules";
constexpr const char* kUdevSaid = "/tmp/udev-said";

bool RunUdev(const std::string& rulesPath) {
  const std::vector<std::string> devices = HidPedal::InputDevices();
  if (devices.size() != 1) return false;
  std::error_code failed;
  fs::create_directories(fs::path(kOwnRules).parent_path(), failed);
  fs::copy_file(rulesPath, kOwnRules, fs::copy_options::overwrite_existing, failed);
  const std::string device = "/sys/class/hidraw/" + fs::path(devices.front()).filename().string();
  const std::string command = "udevadm test " + device + " >" + kUdevSaid + " 2>&1";
  return !failed && std::system(command.c_str()) == 0;
}

}  // namespace

/// What the process with the rights of root has in its hands.
struct Hardware::Keeper {
  explicit Keeper(SerialWires& wires) : box(wires) {}

  bool Perform(const Request& request) {
    const std::span bytes = std::span(request.bytes).first(request.size);
    switch (request.deed) {
      case Deed::PlugPedal:
        return pedal.Plug(request.make);
      case Deed::UnplugPedal:
        pedal.Unplug();
        return true;
      case Deed::Report:
        return pedal.Report(bytes);
      case Deed::Permit:
        return HidPedal::Permit(request.everybody);
      case Deed::PlugBusPedal:
        return gadget.Plug(request.make);
      case Deed::UnplugBusPedal:
        gadget.Unplug();
        return true;
      case Deed::ReportOnBus:
        return gadget.Report(bytes);
      case Deed::AskUdev:
        return RunUdev(request.path);
      case Deed::PlugBox:
        return box.Plug();
      case Deed::UnplugBox:
        box.Unplug();
        return true;
    }
    return false;
  }

  HidPedal pedal;
  UsbGadget gadget;
  SerialBox box;
};

Hardware::Hardware() {
  void* const shared = ::mmap(nullptr, sizeof(SerialWires), PROT_READ | PROT_WRITE,
                              MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  std::array<int, 2> ends{};
  if (shared == MAP_FAILED ||
      ::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) {
    std::abort();
  }
  wires_ = new (shared) SerialWires;
  keeper_ = ::fork();
  ::close(ends[keeper_ == 0 ? 0 : 1]);
  if (keeper_ == 0) Serve(ends[1], *wires_);
  socket_ = ends[0];
}

Hardware::~Hardware() {
  ::close(socket_);
  ::waitpid(keeper_, nullptr, 0);
  ::munmap(wires_, sizeof *wires_);
}

bool Hardware::PlugPedal(const HidMake& make) {
  return Do({.deed = Deed::PlugPedal, .make = make});
}

bool Hardware::UnplugPedal() { return Do({.deed = Deed::UnplugPedal}); }

bool Hardware::Report(const std::vector<std::vector<std::uint8_t>>& reports) {
  return std::ranges::all_of(reports, [this](const std::vector<std::uint8_t>& bytes) {
    Request request{.deed = Deed::Report, .size = static_cast<std::uint8_t>(bytes.size())};
    std::ranges::copy(bytes, request.bytes);
    return Do(request);
  });
}

bool Hardware::Press(const std::vector<std::uint8_t>& bits) {
  std::vector<std::vector<std::uint8_t>> reports;
  for (const std::uint8_t state : bits) reports.push_back({state, 0});
  return Report(reports);
}

bool Hardware::PermitPedal(bool everybody) {
  return Do({.deed = Deed::Permit, .everybody = everybody});
}

bool Hardware::PlugBusPedal(const HidMake& make) {
  return Do({.deed = Deed::PlugBusPedal, .make = make});
}

bool Hardware::UnplugBusPedal() { return Do({.deed = Deed::UnplugBusPedal}); }

bool Hardware::PressOnBus(std::uint8_t bits) {
  return Do({.deed = Deed::ReportOnBus, .size = 2, .bytes = {bits, 0}});
}

std::string Hardware::AskUdev(const std::string& rulesPath) {
  Request request{.deed = Deed::AskUdev};
  rulesPath.copy(request.path, sizeof request.path - 1);
  if (!Do(request)) return {};
  std::ostringstream said;
  said << std::ifstream(kUdevSaid).rdbuf();
  return said.str();
}

bool Hardware::PlugSerialBox() { return Do({.deed = Deed::PlugBox}); }

bool Hardware::UnplugSerialBox() { return Do({.deed = Deed::UnplugBox}); }

bool Hardware::Do(const Request& request) const {
  bool done = false;
  return ::send(socket_, &request, sizeof request, MSG_NOSIGNAL) == sizeof request &&
         ::recv(socket_, &done, sizeof done, 0) == sizeof done && done;
}

void Hardware::Serve(int socket, SerialWires& wires) {
  ::prctl(PR_SET_PDEATHSIG, SIGTERM);
  Keeper keeper(wires);
  Request request;
  while (::recv(socket, &request, sizeof request, 0) == sizeof request) {
    const bool done = keeper.Perform(request);
    if (::send(socket, &done, sizeof done, MSG_NOSIGNAL) != sizeof done) break;
  }
  keeper.box.Unplug();
  ::_exit(0);
}

}  // namespace tavlo::test
