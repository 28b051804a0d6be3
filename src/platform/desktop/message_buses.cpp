#include "platform/desktop/message_buses.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "platform/desktop/bus_messages.h"

namespace tavlo::platform::desktop {
namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* kSessionBus = "DBUS_SESSION_BUS_ADDRESS";
constexpr const char* kAccessibilityBus = "AT_SPI_BUS_ADDRESS";
/// An address of a kind that there is not. Without any, libraries would look for the bus elsewhere.
constexpr const char* kNoBus = "disabled:";
/// A queue of connections that is full can only be tried again.
constexpr int kTryAgainMilliseconds = 5;

/// How a bus behaves. One that refuses, or hangs up, keeps no caller waiting.
enum class Bus { Absent, Silent, Refuses, Answers };

struct SocketAddress {
  sockaddr_un name{};
  socklen_t length = 0;
};

class Socket {
 public:
  Socket() : handle_(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)) {}
  ~Socket() {
    if (handle_ >= 0) ::close(handle_);
  }
  Socket(const Socket&) = delete;
  int Handle() const { return handle_; }

 private:
  int handle_;
};

/// Cuts the text up to the separator off its front; all of it where there is none.
std::string_view Take(std::string_view& text, char separator) {
  const std::string_view part = text.substr(0, text.find(separator));
  text.remove_prefix(std::min(part.size() + 1, text.size()));
  return part;
}

/// A value as it stands in an address, where bytes may be written as a percent sign and two digits.
std::string Unescaped(std::string_view value) {
  std::string bytes;
  while (!value.empty()) {
    unsigned char byte = 0;
    const std::string_view digits = value.substr(1, 2);
    const char* const end = digits.data() + digits.size();
    if (value.front() == '%' && digits.size() == 2 &&
        std::from_chars(digits.data(), end, byte, 16).ptr == end) {
      value.remove_prefix(2);
    } else {
      byte = static_cast<unsigned char>(value.front());
    }
    bytes += static_cast<char>(byte);
    value.remove_prefix(1);
  }
  return bytes;
}

/// The address of a socket; nothing where the name is empty or too long for one. An abstract name
/// starts with a zero byte.
std::optional<SocketAddress> Named(const std::string& name) {
  SocketAddress address;
  if (name.empty() || name.size() >= sizeof address.name.sun_path) return std::nullopt;
  address.name.sun_family = AF_UNIX;
  name.copy(address.name.sun_path, name.size());
  const bool abstract = name.front() == '\0';
  address.length =
      static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size() + (abstract ? 0 : 1));
  return address;
}

/// The socket that one address of a bus names; nothing for other kinds of address.
std::optional<SocketAddress> SocketOf(std::string_view address) {
  if (Take(address, ':') != "unix") return std::nullopt;
  while (!address.empty()) {
    std::string_view value = Take(address, ',');
    const std::string_view key = Take(value, '=');
    if (key == "path") return Named(Unescaped(value));
    if (key == "abstract") return Named('\0' + Unescaped(value));
  }
  return std::nullopt;
}

int MillisecondsUntil(Clock::time_point end) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
  return static_cast<int>(std::max<std::chrono::milliseconds::rep>(left.count(), 0));
}

Bus Connect(const Socket& socket, const SocketAddress& address, Clock::time_point end) {
  while (::connect(socket.Handle(), reinterpret_cast<const sockaddr*>(&address.name),
                   address.length) != 0) {
    if (errno != EAGAIN) return Bus::Absent;
    if (MillisecondsUntil(end) == 0) return Bus::Silent;
    ::poll(nullptr, 0, kTryAgainMilliseconds);
  }
  return Bus::Answers;
}

/// Sends all of it, or as much as the bus takes in time. A bus that closes the connection does not
/// make the toolkit wait either, so that counts as an answer.
Bus Send(const Socket& socket, std::string_view bytes, Clock::time_point end) {
  while (!bytes.empty()) {
    const ssize_t sent = ::send(socket.Handle(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent < 0 && errno != EAGAIN) return Bus::Refuses;
    bytes.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(sent, 0)));
    pollfd wait{.fd = socket.Handle(), .events = POLLOUT, .revents = 0};
    if (!bytes.empty() && ::poll(&wait, 1, MillisecondsUntil(end)) <= 0) return Bus::Silent;
  }
  return Bus::Answers;
}

/// Reads until `isEnough` says so of what came.
template <typename Enough>
Bus Receive(const Socket& socket, Clock::time_point end, const Enough& isEnough) {
  std::array<char, 4096> answer{};
  for (;;) {
    pollfd wait{.fd = socket.Handle(), .events = POLLIN, .revents = 0};
    if (::poll(&wait, 1, MillisecondsUntil(end)) <= 0) return Bus::Silent;
    const ssize_t length = ::read(socket.Handle(), answer.data(), answer.size());
    if (length <= 0) return Bus::Refuses;
    if (isEnough(std::string_view(answer.data(), static_cast<std::size_t>(length)))) {
      return Bus::Answers;
    }
  }
}

/// Begins to introduce this process, which the bus answers with a line. One that does not accept it
/// hangs up on whoever goes on.
Bus Greet(const Socket& socket, Clock::time_point end) {
  std::string greeting = "AUTH EXTERNAL ";
  for (const char digit : std::to_string(::getuid())) greeting += {'3', digit};
  greeting.insert(0, 1, '\0');
  const Bus sent = Send(socket, greeting + "\r\n", end);
  if (sent != Bus::Answers) return sent;
  std::string line;
  const Bus answer = Receive(socket, end, [&](std::string_view came) {
    line += came;
    return line.find('\n') != line.npos;
  });
  return answer == Bus::Answers && !line.starts_with("OK") ? Bus::Refuses : answer;
}

/// Asks what libraries ask first. A bus that greets and then hangs answers none of it.
Bus Ask(const Socket& socket, Clock::time_point end) {
  const std::string calls = CallOfTheBus(1, "Hello") + CallOfTheBus(2, "ListNames");
  const Bus sent = Send(socket, "BEGIN\r\n" + calls, end);
  if (sent != Bus::Answers) return sent;
  BusAnswers answers;
  return Receive(socket, end, [&](std::string_view came) {
    answers.Take(came);
    return answers.Count() == 2 || answers.Garbled();
  });
}

Bus Talk(const Socket& socket, Clock::time_point end) {
  const Bus greeted = Greet(socket, end);
  return greeted == Bus::Answers ? Ask(socket, end) : greeted;
}

/// Of several addresses the first to take a connection is the bus, as it is to the libraries.
Bus Try(std::string_view addresses, std::chrono::milliseconds patience) {
  const Clock::time_point end = Clock::now() + patience;
  while (!addresses.empty()) {
    const std::optional<SocketAddress> address = SocketOf(Take(addresses, ';'));
    if (!address) continue;
    const Socket socket;
    const Bus bus = Connect(socket, *address, end);
    if (bus != Bus::Absent) return bus == Bus::Answers ? Talk(socket, end) : bus;
  }
  return Bus::Absent;
}

std::string Variable(const char* name) {
  const char* const value = std::getenv(name);
  return value ? value : "";
}

}  // namespace

std::string SessionBusAddress() {
  const std::string named = Variable(kSessionBus);
  const std::string folder = Variable("XDG_RUNTIME_DIR");
  return !named.empty() || folder.empty() ? named : "unix:path=" + folder + "/bus";
}

void LeaveSilentBuses(std::chrono::milliseconds patience) {
  if (Try(SessionBusAddress(), patience) == Bus::Silent) {
    std::fputs("tavlodeck: The desktop's session bus does not answer; going on without it.\n",
               stderr);
    ::setenv(kSessionBus, kNoBus, 1);
  }
  if (Try(Variable(kAccessibilityBus), patience) == Bus::Silent) {
    std::fputs("tavlodeck: The bus of screen readers does not answer; going on without it.\n",
               stderr);
    ::unsetenv(kAccessibilityBus);
  }
}

}  // namespace tavlo::platform::desktop
