#pragma once

#include <gtest/gtest.h>
#include <sys/socket.h>

#include <QApplication>
#include <cerrno>
#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/desktop/file_handover.h"
#include "platform/desktop/handover_message.h"
#include "platform/desktop/handover_sockets.h"
#include "platform/qt/qt_loop.h"
#include "support/temporary_folder.h"

namespace tavlo::test {

/// A deck that listens for its root, and starts on that root, all on one loop.
struct HandoverBench : testing::Test {
  using Paths = shell::FileHandover::Paths;

  static void SetUpTestSuite() {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int count = 1;
    static char name[] = "file_handover_test";
    static char* arguments[] = {name, nullptr};
    if (!qApp) new QApplication(count, arguments);
  }

  void Listen() {
    deck.emplace(loop, loop, root, patienceOfDeck);
    deck->Listen([this](const Paths& paths) { came.push_back(paths); });
  }
  /// Another start on that root, or on another.
  bool HandOver(const Paths& paths, base::Duration patience = std::chrono::minutes(2)) {
    return platform::desktop::SocketHandover(loop, loop, root, patience).HandOver(paths);
  }
  /// Turns the loop until it is so; false when it never is.
  bool Comes(const std::function<bool()>& condition) {
    // What other processes do wakes no loop.
    base::Timer look(loop, "look", std::chrono::milliseconds(2));
    look.OnTick = [] {};
    look.Start();
    return loop.TurnUntil(condition, loop.Now() + std::chrono::minutes(2));
  }

  TemporaryFolder home;
  std::string root = home / "Lyrane/TavloDeck";
  const std::string name = platform::desktop::HandoverName(root);
  platform::qt::QtLoop loop;
  base::Duration patienceOfDeck = std::chrono::minutes(2);
  std::vector<Paths> came;
  std::optional<platform::desktop::SocketHandover> deck;
};

/// The end of a start that keeps to no rule.
class RawStart {
 public:
  explicit RawStart(const std::string& name) : socket_(platform::desktop::ConnectTo(name)) {}

  bool Connected() const { return static_cast<bool>(socket_); }
  /// What the other end takes of it now; below 0 when it takes no more.
  ssize_t Send(std::string_view bytes) const {
    return ::send(socket_.Get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
  }
  void EndSending() const { ::shutdown(socket_.Get(), SHUT_WR); }
  /// What was answered, "end" when the other end has let go, nothing so far.
  std::string Answer() const {
    char answer = 0;
    const ssize_t got = ::recv(socket_.Get(), &answer, 1, MSG_PEEK);
    if (got == 1) return {answer};
    return got == 0 || errno == ECONNRESET ? "end" : "";
  }

 private:
  platform::SocketHandle socket_;
};

}  // namespace tavlo::test
