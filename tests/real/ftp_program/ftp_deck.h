#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "ftp_program/watched_loop.h"
#include "support/driven_program.h"
#include "support/home.h"

namespace tavlo::test {

/// What a profile has beside what is shipped.
struct Server {
  std::string name;
  std::string address;
  std::string user = "typist";
  std::string password = "slow-Ostrich7";
  store::Assignments more = {};
};

/// A root with the server in a row of its profiles.
void StoreServer(const Home& home, int row, const Server& server);

/// The files of a folder: contents by name. A folder that is missing holds nothing.
std::map<std::string, std::string> FilesIn(const std::string& folder);

/// Under the names that they had before the sort put a number into those of its import directory.
std::map<std::string, std::string> Unstamped(const std::map<std::string, std::string>& files);

/// The real program without a sound card, used by hand in its Ftp view.
class FtpDeck : public testing::Test {
 protected:
  FtpDeck() { home.MakeRoot(QuietSettings()); }

  /// Runs the program from its Ftp view to its end, and expects that nothing has held its loop.
  void Run(const std::function<void()>& script);

  // For the script.

  forms::MainForm& Main() { return program->Main(); }
  std::string Landed(const std::string& name = {}) const {
    return home.Root() + "/Files/FtpQueue/" + name;
  }

  /// What the status box shows in the window.
  std::string Status();
  /// Waits until it shows this.
  void AwaitStatus(const std::string& words);
  std::string Caption(forms::Command forms::FtpFrame::*command);
  bool Enabled(forms::Command forms::FtpFrame::*command);
  std::vector<std::string> Names(forms::Table forms::FtpFrame::*table);
  std::string CaptionOf(forms::Pane forms::FtpFrame::*pane);
  std::string QuietLine();

  /// In a box that drops down, by the key that leads to the entry.
  void Choose(const char* box, std::uint32_t key);
  void Connect();
  void List();
  /// Presses a key, and waits until no rule waits for a server or for time to pass any more.
  void Press(const char* key);
  /// Moves all that is listed, and begins to fetch it.
  void DownloadAll();
  /// Waits until the loop has come past so often, while whatever stands still does.
  void AwaitTurns(int turns = 30);
  /// Nobody is logged in, and the deck offers to try again.
  void ExpectOffersToConnect();
  /// Leaves by the close button and agrees.
  void Leave();

  Home home;
  platform::TrustStore trust;
  std::optional<DrivenProgram> program;
  std::optional<WatchedLoop> watch;
};

}  // namespace tavlo::test
