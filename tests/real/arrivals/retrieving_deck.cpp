#include "arrivals/retrieving_deck.h"

#include <grp.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <csignal>
#include <utility>

#include "support/driven_program.h"
#include "support/screen.h"

namespace tavlo::test {
namespace {

bool Become(uid_t user) {
  return ::setgroups(0, nullptr) == 0 && ::setgid(user) == 0 && ::setuid(user) == 0;
}

/// Closes the box that is open, and says what it told.
std::string CloseBox(DrivenProgram& program) {
  const std::string told = program.Box();
  if (told.empty()) return told;
  program.Do([] {
    QMessageBox* const box = DrivenProgram::OpenBox();
    if (box) box->button(QMessageBox::Ok)->click();
  });
  return told;
}

bool TellsOfNoAnswer(const std::string& told) {
  return told.starts_with("Tavlo Deck - Network Fault") ||
         told.find("the folder gives no answer") != told.npos;
}

/// Waits until the list stands. There is no sound card here, and that is told once.
bool AwaitList(DrivenProgram& program, bool onAShare) {
  return Until([&] {
    const std::string told = CloseBox(program);
    const bool expected = told.empty() || told.starts_with("Tavlo Deck - Sound Card") ||
                          (onAShare && TellsOfNoAnswer(told));
    EXPECT_TRUE(expected) << told;
    return program.IsReady() || !expected;
  });
}

}  // namespace

RetrievingDeck::RetrievingDeck(const Home& home, Setup setup) : process_(::fork()) {
  EXPECT_GE(process_, 0) << "no process can be forked";
  if (process_ == 0) Serve(home, setup);
}

RetrievingDeck::~RetrievingDeck() {
  if (process_ <= 0) return;
  ::kill(process_, SIGKILL);
  ::waitpid(process_, nullptr, 0);
}

void RetrievingDeck::Serve(const Home& home, const Setup& setup) const {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (setup.user && !Become(*setup.user)) ::_exit(126);
  // Whoever becomes another user loses it.
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (::chdir(setup.current.c_str()) != 0) ::_exit(125);
  DrivenProgram program(home);
  const int status = program.Run([&] {
    const bool stands = program.Begin() && AwaitList(program, setup.onAShare);
    EXPECT_TRUE(stands);
    while (stands && !common_->over) {
      ++common_->refreshes;
      QMetaObject::invokeMethod(
          qApp, [&program] { program.Main().cmdUpdateFileList.Press(); }, Qt::QueuedConnection);
      program.Do([] {});
      if (!AwaitList(program, setup.onAShare) || testing::Test::HasFailure()) break;
    }
    program.Do([&] { program.Loop().Quit(0); });
  });
  ::_exit(status == 0 && !testing::Test::HasFailure() ? 0 : 1);
}

bool RetrievingDeck::AwaitFirstList() {
  return Until([this] { return Refreshes() > 0; });
}

std::optional<int> RetrievingDeck::End() {
  common_->over = true;
  int status = 0;
  if (!Until([&] { return ::waitpid(process_, &status, WNOHANG) == process_; })) return {};
  process_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace tavlo::test
