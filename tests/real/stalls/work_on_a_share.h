#pragma once

#include <gtest/gtest.h>

#include <QObject>
#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>

#include "stalls/share.h"
#include "support/driven_program.h"
#include "support/sound_server.h"

namespace tavlo::test {

/// What goes on in the program while a rule waits for a folder: the player is fed, and the deck's
/// windows are painted, which they are asked to be at each feed.
class LifeInWaits : public QObject {
 public:
  explicit LifeInWaits(DrivenProgram& program);

  int Feeds = 0;
  int Paints = 0;
  /// Runs at each feed in a wait, on the program's thread.
  std::function<void()> OnFeed = [] {};

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void Tick();

  DrivenProgram& program_;
  base::Timer feed_;
};

/// The real program at work while a folder of its root, or all of it, stands on a share. Whatever
/// its script does, the thread of the loop may ask nothing of the share.
class WorkOnAShare : public testing::Test {
 protected:
  static constexpr int kRate = 8000;
  /// A wait until a folder is given up feeds and paints more often than this: it looks for an
  /// answer fifty times at least.
  static constexpr int kFeedsInAWait = 45;

  explicit WorkOnAShare(std::string below, const store::Assignments& settings = {});
  void SetUp() override;

  /// Puts a document of that author into the Queue or another folder of the root's files, and
  /// returns its name. Each has a sound of its own.
  std::string Put(const std::string& author, int seconds, const std::string& folder = "InQueue");
  /// Where each file of the Queue, of Completed and of the rescue folder stands, and whose it is;
  /// "?" where it is not, to the byte, what was put there. The share is not asked.
  using Places = std::multimap<std::string, std::string>;
  Places Standing() const;

  /// Runs the program from its first list to its end, after which it is gone.
  void Run(const std::function<void()>& script);

  // For the script.

  StallingMount& Mount() { return share->Mount(); }
  const StallingMount& Mount() const { return share->Mount(); }
  forms::MainForm& Main() { return program->Main(); }
  playback::AudioEngine& Engine() { return program->Rooms().engine; }
  double Position();
  double Played();
  bool Playing();
  bool Enabled(forms::Command forms::MainForm::*command);
  std::string Line();
  /// Of the Queue's list.
  std::size_t Rows();

  void Play(const std::string& name);
  /// Puts a document in work, stopped at its end.
  void PutInWork(const std::string& name);
  void Refresh();
  /// Does what asks the stalled share, and waits until that is over. The window must have lived
  /// meanwhile.
  void WaitInVain(const std::function<void()>& hand, const std::function<bool()>& over);
  /// The same where a box tells that it was in vain; returns what that said.
  std::string BoxInVain(const std::function<void()>& hand);
  /// The share answers again, and owes nothing.
  void GoOn();

  SoundServer server;
  Home home;
  std::optional<Share> share;
  std::optional<DrivenProgram> program;
  std::optional<LifeInWaits> life;

 private:
  std::string Behind(const std::string& path) const;

  const std::string below_;
  const store::Assignments settings_;
  std::map<std::string, std::string> authors_;  ///< By the bytes of their documents.
};

}  // namespace tavlo::test
