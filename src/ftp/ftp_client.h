#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tavlo::ftp {

/// A client of FTP servers that drives one channel: one log-in at a time, and in it one listing,
/// one transfer or one command. On the loop's thread; no call holds it. What waits for a server
/// turns the loop meanwhile, so timers and hands run in it, and must call nothing here; such a call
/// comes back within these limits: 30 s for a connection, 15 s for a greeting, 30 s without a byte.
///
/// A negative result is a failure, whose words `fceErrorText` has. Texts are bytes as the profile
/// or the server has them; one with a line break or a NUL in it is refused with `kTextRefused` and
/// never reaches the wire. A connection that was lost is not made again by itself: whatever is
/// asked of it then fails.
class FtpClient {
 public:
  /// The two kinds of `fceGetList`.
  static constexpr int kNames = 1;
  static constexpr int kOneFile = 2;
  /// The parameters of `fceSetInteger` and `fceGetInteger`.
  static constexpr int kBlocking = 6;
  static constexpr int kBytesMoved = 10;
  static constexpr int kPassive = 12;

  static constexpr int kTextRefused = -1;
  /// Nobody is logged in, or not any more.
  static constexpr int kNotConnected = -2;
  /// What stands at the landing name stays.
  static constexpr int kLandingTaken = -3;
  /// The length of the file is known, and the disk has less room.
  static constexpr int kNoRoom = -4;
  /// From here down to the client's own: faults of the file that is under way, whose server
  /// answers.
  static constexpr int kFirstOfTheFile = -50;
  /// Further negative results are the client's own.
  static constexpr int kFirstOwn = -100;

  virtual ~FtpClient() = default;

  /// Makes the client ready for so many channels; one is all that is asked for.
  virtual int fceAttach(int channels) = 0;
  /// Drops what is under way and lets go of everything, without a wait. Nothing but `fceAttach` may
  /// follow.
  virtual void fceRelease() = 0;

  /// Logs in. The server's text is that of the profile; `ReadServerAddress` says what it means. A
  /// log-in that stands already is closed first. Passive mode is off until it is set.
  virtual int fceConnect(const std::string& server, const std::string& user,
                         const std::string& password) = 0;
  /// Logs out, without waiting for the server. A transfer under way ends where it is.
  virtual void fceClose() = 0;

  /// The folder that received files land in, full path.
  virtual int fceSetLocalDir(const std::string& folder) = 0;
  /// Changes to a directory of the server; the empty text leaves the one of the log-in.
  virtual int fceSetServerDir(const std::string& directory) = 0;
  /// 'B' asks for binary transfers. Listings are text in any mode.
  virtual int fceSetMode(char mode) = 0;
  /// `kPassive`: 1 lets the server name the data port; the address that it names is ignored, the
  /// one of the log-in is taken. `kBlocking`: 0 before a get, 1 after it.
  virtual int fceSetInteger(int parameter, int value) = 0;
  /// `kBytesMoved`: bytes of the file that was asked for last which have come.
  virtual std::int64_t fceGetInteger(int parameter) const = 0;

  /// Reads a listing into the buffer, `size` bytes at most, and returns how many there are; what is
  /// behind them is dropped as it comes. 0: nothing was found.
  /// `kNames`: the names in the directory, each with CR LF behind it. `kOneFile`: one line about
  /// the file whose name stands in the buffer up to a NUL.
  virtual int fceGetList(int kind, std::string& buffer, std::size_t size) = 0;

  /// Asks for a file and returns once the server sends it, or a failure; a fault of the file leaves
  /// the log-in as it is. It lands under `landing` in the local folder, where no file of that name
  /// may stand. It then comes in as `fceDriver` is called, and also between the calls.
  virtual int fceGetFile(const std::string& name, const std::string& landing) = 0;
  /// How the get is doing: above 0 it goes on, 0 the whole file has arrived and is on the disk for
  /// good, below 0 it failed and the log-in is over: the connection is lost, unless the fault is
  /// one of the file. Waits up to a millisecond for news.
  virtual int fceDriver() = 0;
  /// Has the server delete a file; nobody waits for its answer.
  virtual void fceDelFile(const std::string& name) = 0;

  /// A failure in words for a person, 128 bytes at most. Empty for a code that is no failure.
  virtual std::string fceErrorText(int code) const = 0;
};

/// The lines of a listing, each of which ends with CR LF. What stands behind the last one is none:
/// it was cut off.
std::vector<std::string_view> LinesOf(std::string_view listing);

/// The line of a listing that is this name, from the byte `start` on, at most `longest` bytes of
/// it; empty when there is none.
std::string fceMatchFile(std::string_view listing, std::size_t start, std::string_view name,
                         std::size_t longest);

/// The length that stands in a line about one file: servers write it in one of the columns `first`
/// to `last`, counted from 1, as a whole number behind others, or as the fact "size=" of the first
/// column. 0 when there is none.
std::int64_t fceFileLength(std::string_view line, int first, int last);

}  // namespace tavlo::ftp
