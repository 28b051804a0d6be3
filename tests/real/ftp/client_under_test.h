#pragma once

#include <memory>
#include <string>

#include "base/time.h"
#include "ftp/ftp_client.h"
#include "support/plain_loop.h"

namespace tavlo::test {

/// How long the client waits for a server before it gives up.
struct ClientLimits {
  base::Duration connection = std::chrono::seconds(30);
  base::Duration greeting = std::chrono::seconds(15);
  base::Duration stall = std::chrono::seconds(30);
};

/// The client that the program has, ready for its one channel. It trusts the certificates of that
/// file alone.
std::unique_ptr<ftp::FtpClient> MakeClient(PlainLoop& loop, const ClientLimits& limits,
                                           const std::string& trusted);

}  // namespace tavlo::test
