#pragma once

#include "forms/configuration_form.h"
#include "ftp/auto_retrieve.h"
#include "ftp/channel.h"
#include "ftp/connection.h"
#include "ftp/download.h"
#include "ftp/file_lists.h"

namespace tavlo::ftp {

/// Fetching files from servers, for the life of the program. On the loop's thread.
class Ftp {
 public:
  Ftp(const Edges& edges, forms::ConfigurationForm& config);

  /// The client has accepted the attach call.
  bool FtpLibraryAttached = false;

  void Attach();
  /// The program ends: no timer of this room ticks any more, and what waits goes no further.
  void End();
  /// Ends, logs out and lets go of the client, without a wait.
  void Release();

  Channel channel;
  FileLists lists;
  Connection connection;
  Download download;
  AutoRetrieve autoRetrieve;
};

}  // namespace tavlo::ftp
