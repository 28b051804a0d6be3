#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "ftp_program/faulty_server.h"
#include "ftp_program/ftp_deck.h"
#include "session/working_program.h"
#include "support/screen.h"
#include "support/sound_files.h"

namespace tavlo::test {
namespace {

const std::string kPart(40'000, 'a');

/// A server in a process of its own that stands still in the middle of its file for good.
class StandingServer {
 public:
  StandingServer() {
    std::array<int, 2> wires{};
    if (::pipe2(wires.data(), O_CLOEXEC) != 0) std::abort();
    process_ = ::fork();
    if (process_ == 0) Serve(wires[1]);
    ::close(wires[1]);
    std::array<char, 64> address{};
    const ssize_t size = ::read(wires[0], address.data(), address.size());
    ::close(wires[0]);
    EXPECT_GT(size, 0) << "the server does not come up";
    address_.assign(address.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
  }
  ~StandingServer() {
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }
  StandingServer(const StandingServer&) = delete;

  const std::string& Address() const { return address_; }

 private:
  [[noreturn]] static void Serve(int tell) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    FaultyServer server{{{"a.eW2", kPart + kPart}}};
    server.Prepare({.verb = "RETR", .sent = kPart});
    const std::string address = server.Address();
    if (::write(tell, address.data(), address.size()) < 0) ::_exit(1);
    while (true) ::pause();
  }

  pid_t process_ = -1;
  std::string address_;
};

void AwaitDeck(DrivenProgram& program) {
  ASSERT_TRUE(program.Begin());
  EXPECT_EQ(program.AnswerBox(), "Tavlo Deck - Sound Card: A sound card can not be found");
  ASSERT_TRUE(Until([&] { return program.IsReady(); })) << program.Box();
}

/// Between two events of the program's loop, and until no rule waits for the server any more: a key
/// that is pressed under such a wait does nothing.
void Press(DrivenProgram& program, forms::Command& key) {
  const auto pressed = std::make_shared<bool>(false);
  program.Do([&] {
    program.Loop().Post([pressed, &key] {
      key.Press();
      *pressed = true;
    });
  });
  ASSERT_TRUE(program.Until([&] { return *pressed && !program.Rooms().ftp.channel.Waits(); }));
}

TEST(FtpSession, ThatEndsInTheMiddleOfATransferLeavesThePartWhichTheNextStartSorts) {
  const Home home;
  home.MakeRoot(QuietSettings());
  const StandingServer server;
  StoreServer(home, 0, {.name = "Clinic", .address = server.Address()});
  const std::string landed = home.Root() + "/Files/FtpQueue/a.eW2";
  WorkingProgram first(home, [&](DrivenProgram& program) {
    AwaitDeck(program);
    forms::MainForm& form = program.Main();
    for (forms::Command* const key : {&form.mnuViewFtp, &form.bConnect, &form.bList,
                                      &form.cmdFtpListToDownload, &form.bDownload}) {
      Press(program, *key);
    }
    ASSERT_TRUE(Until([&] { return ReadFile(landed) == kPart; }));
  });
  ASSERT_TRUE(first.Await());
  first.Send(SIGTERM);
  EXPECT_EQ(first.ExitStatus(), 0);
  // Whoever waits until the server is given up sorts the part then.
  EXPECT_EQ(ReadFile(landed), kPart);

  DrivenProgram next(home);
  EXPECT_EQ(next.Run([&] {
    AwaitDeck(next);
    EXPECT_FALSE(std::filesystem::exists(landed));
    EXPECT_EQ(ReadFile(home.QueuePath() + "/a.wav"), kPart);
    next.Exit();
  }),
            0);
}

}  // namespace
}  // namespace tavlo::test
