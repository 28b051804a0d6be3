#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/loop.h"
#include "ftp/ftp_client.h"
#include "support/simulated_disk.h"

namespace tavlo::test {

/// A server with one directory, which can do, and refuse, what real ones do.
struct SimulatedFtpServer {
  std::string address = "ftp.example.org";
  std::string user = "typist";
  std::string password = "secret";
  /// The directory that has the files.
  std::string directory = "out";
  /// Contents by name.
  std::map<std::string, std::string> files;
  /// What NLST answers, in place of the names; not held to anything.
  std::optional<std::string> listing;
  /// It names lengths.
  bool tellsLengths = true;
  bool refusesDeletes = false;
  /// Names that it lists and does not send, such as directories.
  std::vector<std::string> refused;
  /// Nobody answers: whatever is asked fails after the client's limit, and a connection that stood
  /// is lost with it.
  bool down = false;
  /// The next listing fails; the log-in stands.
  bool failsListings = false;
  /// The connection is lost once so many bytes of a file have been sent.
  std::optional<std::size_t> breaksAfter;
  /// Its author still sends this file, so its length was not kept.
  std::string growing;
  /// What each question takes, and a second of a transfer; one without a byte is given up after the
  /// client's limit.
  base::Duration latency = std::chrono::milliseconds{20};
  std::size_t bytesPerSecond = 1'000'000;

  // What it has seen.
  int logIns = 0;
  int loggedIn = 0;
  std::vector<std::string> deleted;
  std::vector<std::string> sent;  ///< Names of the files that went out whole.
};

/// A client as strict as the real one: it turns the loop while it waits, refuses what a wire must
/// not carry, lands files on the simulated disk as they come, and takes note of whoever calls it
/// while it waits. Where the disk crashes the program is as good as dead, and so is this.
class SimulatedFtpClient : public ftp::FtpClient {
 public:
  static constexpr int kNoAnswer = kFirstOwn - 1;
  static constexpr int kLogInRefused = kFirstOwn - 2;
  static constexpr int kNoDirectory = kFirstOwn - 3;
  static constexpr int kListingFailed = kFirstOwn - 4;
  static constexpr int kNotSent = kFirstOfTheFile - 3;
  static constexpr int kLost = kFirstOwn - 6;
  static constexpr int kNoFolder = kFirstOwn - 7;
  static constexpr int kGrown = kFirstOfTheFile - 2;
  static constexpr base::Duration kConnectLimit = std::chrono::seconds{30};
  /// A server that says nothing for so long is given up.
  static constexpr base::Duration kSilenceLimit = std::chrono::seconds{30};

  SimulatedFtpClient(base::Loop& loop, SimulatedDisk& disk) : loop_(loop), disk_(disk) {}

  SimulatedFtpServer server;
  /// There is no module to attach to.
  bool missing = false;
  /// "connect", "list", "get a.wav" and so on, in their order.
  std::vector<std::string> calls;
  /// Calls that came while another one waited, or when the client was released.
  std::vector<std::string> misuses;
  /// Runs in each wait, once the question is on its way.
  std::function<void()> Meanwhile;
  /// Bytes that count as having come before each file.
  std::int64_t movedBefore = 0;
  /// Rounds in which no file is done.
  int roundsBefore = 0;
  /// A get does not become a blocking one again.
  bool refusesToBlock = false;
  /// Bytes that the disk has room for.
  std::size_t room = 1'000'000'000;
  int passive = 0;
  char mode = 0;
  std::string localFolder;
  bool attached = false;

  /// A transfer is under way.
  bool Receiving() const { return transfer_.has_value(); }
  /// Where what comes in is written; empty while nothing does.
  std::string LandingPath() const { return transfer_ ? transfer_->path : ""; }
  /// Somebody is logged in.
  bool LoggedIn() const { return connected_; }

  /// A file with these contents begins to come in at this path.
  std::function<void(const std::string& path, const std::string& contents)> OnBegun;
  /// The file has come whole.
  std::function<void(const std::string& name, const std::string& contents)> OnLanded;
  /// The transfer has ended before that, and this is what came.
  std::function<void(const std::string& part)> OnCut;
  /// The server deletes a file with these contents.
  std::function<void(const std::string& contents)> OnDeleted;

  /// The server closes the connection. The program finds out when it next asks for something.
  void HangUp();
  /// The process is gone, and with it its connection.
  void ForgetProcess();

  int fceAttach(int channels) override;
  void fceRelease() override;
  int fceConnect(const std::string& address, const std::string& user,
                 const std::string& password) override;
  void fceClose() override;
  int fceSetLocalDir(const std::string& folder) override;
  int fceSetServerDir(const std::string& directory) override;
  int fceSetMode(char newMode) override;
  int fceSetInteger(int parameter, int value) override;
  std::int64_t fceGetInteger(int parameter) const override;
  int fceGetList(int kind, std::string& buffer, std::size_t size) override;
  int fceGetFile(const std::string& name, const std::string& landing) override;
  int fceDriver() override;
  void fceDelFile(const std::string& name) override;
  std::string fceErrorText(int code) const override;

 private:
  struct Transfer {
    std::string name;
    std::string contents;
    std::string path;
    /// Of the file that is written, wherever it goes.
    int file = 0;
    base::MonotonicTime begun;
    base::MonotonicTime newsAt;
  };

  /// Notes the call, and lets the time of a question pass. False when nobody is attached any more,
  /// or the call came while another one waits.
  bool Asks(const std::string& call, base::Duration takes);
  /// The same of whoever is logged in. False when nobody is any more.
  bool AsksServer(const std::string& call);
  /// Whether nothing may be asked now, which is noted.
  bool Misuses(const std::string& call);
  std::size_t Come() const;
  /// What has come is written. False when the connection is lost.
  bool Write();
  int NameList(std::string& buffer, std::size_t size) const;
  int LineOf(std::string& buffer, std::size_t size) const;
  void LogOut();

  base::Loop& loop_;
  SimulatedDisk& disk_;
  bool waits_ = false;
  bool released_ = false;
  bool connected_ = false;
  bool inDirectory_ = false;
  std::optional<Transfer> transfer_;
  std::int64_t moved_ = 0;
};

}  // namespace tavlo::test
