#include "platform/desktop/hang_up.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>

#include "support/half_ended.h"

namespace tavlo::test {
namespace {

/// The two ends of a connection, of which the first is closed in whoever plays the server.
struct Connection {
  Connection() { EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()), 0); }
  ~Connection() { ::close(ends[0]); }
  Connection(const Connection&) = delete;

  bool HasEnded() const {
    pollfd server{.fd = ends[0], .events = POLLIN, .revents = 0};
    return ::poll(&server, 1, 0) == 1 && (server.revents & POLLHUP) != 0;
  }

  std::array<int, 2> ends{};
};

TEST(HangUp, EndsTheConnectionsOfAProcessThatCannotEnd) {
  for (const bool hangsUp : {true, false}) {
    const Connection connection;
    const HalfEnded ended([&] { ::close(connection.ends[0]); },
                          [&] {
                            if (hangsUp) platform::desktop::HangUp();
                          });
    ::close(connection.ends[1]);
    EXPECT_EQ(connection.HasEnded(), hangsUp);
  }
}

TEST(HangUp, LeavesAConnectionThatAnotherProcessHasToo) {
  const Connection connection;
  const HalfEnded ended([] {}, [] { platform::desktop::HangUp(); });
  EXPECT_FALSE(connection.HasEnded());
  ::close(connection.ends[1]);
}

}  // namespace
}  // namespace tavlo::test
