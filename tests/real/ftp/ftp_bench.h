#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ftp/client_under_test.h"
#include "ftp/file_servers.h"
#include "ftp/ftp_client.h"
#include "ftp/loop_watch.h"
#include "ftp/scripted_server.h"
#include "support/plain_loop.h"
#include "support/temporary_folder.h"

namespace tavlo::test {

/// No hold of the loop is longer.
inline constexpr std::chrono::milliseconds kLongestHold{50};
/// What a listing is read to.
inline constexpr std::size_t kListing = 25'000;
/// What the line about one file is read to.
inline constexpr std::size_t kLine = 256;

/// A client with its loop and its landing folder, asked as the rules ask it.
class FtpBench {
 public:
  explicit FtpBench(const ClientLimits& limits = {}, const std::string& trusted = "");
  ~FtpBench();
  FtpBench(const FtpBench&) = delete;

  ftp::FtpClient& Client() { return *client_; }
  std::string Landing() const { return folder / "Landing"; }
  std::string Landed(const std::string& name) const { return folder.Read("Landing/" + name); }
  std::vector<std::string> LandedNames() const;

  /// Logs in and prepares the channel as a connect does. The first failure, else 0.
  int Connect(const std::string& address, const std::string& user, const std::string& password,
              const std::string& directory = "");
  int Connect(const FileServer& server, const std::string& directory = "");
  int Connect(const ScriptedServer& server);

  /// The names that a listing has, in order. A failure stays in `Result`.
  std::vector<std::string> List();
  /// What the rules show as the length of a file, or a failure.
  std::int64_t LengthOf(const std::string& name);
  /// Gets a file to its end: 0, or the failure of the get or of the transfer.
  int Get(const std::string& name, const std::string& landing);
  int Get(const std::string& name) { return Get(name, name); }
  /// Drives a get that was accepted, as the ticks do, to its end or until `done`.
  int Drive(const std::function<bool()>& done = [] { return false; });
  /// Turns the loop until somebody else has done something.
  bool Until(const std::function<bool()>& done);

  /// Nothing can be had from the connection any more, and the server knows.
  void ExpectLost(const ScriptedServer& server);
  /// The words for a failure, which are fit to be shown.
  std::string WordsFor(int failure);

  PlainLoop loop;
  const TemporaryFolder folder;
  /// What the last listing came to, and its bytes.
  int Result = 0;
  std::string Listing;

 private:
  std::unique_ptr<ftp::FtpClient> client_;

 public:
  /// Of the whole time; no bench that held its loop up passes.
  LoopWatch watch{loop};
};

}  // namespace tavlo::test
