#include "ftp/client_under_test.h"

#include <gtest/gtest.h>

#include "platform/curl/curl_ftp_client.h"

namespace tavlo::test {

std::unique_ptr<ftp::FtpClient> MakeClient(PlainLoop& loop, const ClientLimits& limits,
                                           const std::string& trusted) {
  using std::chrono::duration_cast;
  using std::chrono::milliseconds;
  const platform::FtpLimits all{.connect = duration_cast<milliseconds>(limits.connection),
                                .greeting = duration_cast<milliseconds>(limits.greeting),
                                .silence = duration_cast<milliseconds>(limits.stall)};
  auto client = std::make_unique<platform::CurlFtpClient>(
      loop, loop, platform::TrustStore{.file = trusted}, all);
  EXPECT_EQ(client->fceAttach(1), 0);
  return client;
}

}  // namespace tavlo::test
