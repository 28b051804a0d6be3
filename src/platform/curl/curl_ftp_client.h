#pragma once

#include <functional>
#include <memory>
#include <string>

#include "base/loop.h"
#include "ftp/ftp_client.h"
#include "platform/curl/ftp_limits.h"
#include "platform/curl/session_thread.h"
#include "platform/curl/transfer.h"
#include "platform/curl/trust_store.h"
#include "platform/wake/bell.h"
#include "platform/wake/descriptor_waits.h"

namespace tavlo::platform {

/// The client of real servers. Each log-in has a thread, on which libcurl makes the connections;
/// see `FtpSession`. A log-in is one connection from its beginning to its end: none is made again
/// by itself, so the password never travels twice unasked.
///
/// On the loop's thread, which waits for no server and no disk; the limits hold for a disk that
/// gives no answer, too.
class CurlFtpClient : public ftp::FtpClient {
 public:
  /// Loop and waits must outlive it.
  CurlFtpClient(base::Loop& loop, DescriptorWaits& waits, TrustStore trust = {},
                FtpLimits limits = {});
  ~CurlFtpClient() override;
  CurlFtpClient(const CurlFtpClient&) = delete;

  int fceAttach(int channels) override;
  void fceRelease() override;
  int fceConnect(const std::string& server, const std::string& user,
                 const std::string& password) override;
  void fceClose() override;
  int fceSetLocalDir(const std::string& folder) override;
  int fceSetServerDir(const std::string& directory) override;
  int fceSetMode(char mode) override;
  int fceSetInteger(int parameter, int value) override;
  std::int64_t fceGetInteger(int parameter) const override;
  int fceGetList(int kind, std::string& buffer, std::size_t size) override;
  int fceGetFile(const std::string& name, const std::string& landing) override;
  int fceDriver() override;
  void fceDelFile(const std::string& name) override;
  std::string fceErrorText(int code) const override;

 private:
  /// Has the log-in's thread do something and turns the loop until it has.
  int Ask(const std::shared_ptr<FtpOrder>& order);
  int Ask(std::function<int(FtpSession&)> work);
  int Await(const std::shared_ptr<SessionThread>& session, const FtpOrder& order);
  int ListNames(std::string& buffer, std::size_t size);
  int Describe(std::string& buffer, std::size_t size);
  /// Leaves the log-in where it is.
  void Abandon();
  bool IsReceiving() const;

  base::Loop& loop_;
  DescriptorWaits& waits_;
  const TrustStore trust_;
  const FtpLimits limits_;
  /// How long a thread may give no sign. It tells itself of a server that is silent, and a bit
  /// earlier; what is silent for longer is something else.
  const base::Duration patience_;
  std::shared_ptr<Bell> bell_;
  std::unique_ptr<DescriptorWait> answersWait_;
  std::shared_ptr<SessionThread> session_;  ///< Null while nobody is logged in.
  std::shared_ptr<Transfer> transfer_;      ///< Of the file that was asked for last.
  std::int64_t seen_ = 0;                   ///< Of its bytes.
  std::uint64_t heard_ = 0;                 ///< Of the thread's signs.
  base::MonotonicTime heardAt_;
  bool waiting_ = false;
  bool passive_ = false;
};

}  // namespace tavlo::platform
