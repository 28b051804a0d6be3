#pragma once

#include <functional>

#include "ftp/channel.h"
#include "ftp/file_lists.h"
#include "ftp/server_list.h"

namespace tavlo::ftp {

/// The press of `bConnect`: logging in to the chosen server, and out of it.
class Connection {
 public:
  Connection(Channel& channel, FileLists& lists);

  void FtpConnectOrDisconnect();

 private:
  void Disconnect();
  void HideWork(bool hidden);
  void DisableWork();

  void Connect();
  /// Asks one thing of the server after the other; the first failure is the last one. Nothing when
  /// the program has ended meanwhile.
  std::optional<int> LogIn(const ServerProfile& profile);
  void BeConnected(const ServerProfile& profile);

  Channel& channel_;
  forms::MainForm& form_;
  FileLists& lists_;
};

}  // namespace tavlo::ftp
