#include "platform/curl/ftp_failures.h"

#include <algorithm>
#include <iterator>

namespace tavlo::platform {
namespace {

using ftp::FtpClient;

/// As long as the caller's buffer.
constexpr std::size_t kMostBytes = 128;

struct Words {
  int failure;
  std::string_view text;
};

constexpr Words kWords[] = {
    {FtpClient::kTextRefused, "A text with a line break in it can not be sent to a server"},
    {FtpClient::kNotConnected, "Not connected to a server. Press Connect"},
    {FtpClient::kLandingTaken,
     "A file with this name waits in the folder of received files already"},
    {FtpClient::kNoRoom,
     "The disk has too little room for this file. Make room, then download it again"},
    {kConnectionLost, "The connection to the server was lost. Press Connect to log in again"},
    {kNoAddress, "This is no server address. Correct the FTP Server ID on the Ftp page"},
    {kUnknownServer, "The server was not found. Check its name on the Ftp page, and the network"},
    {kOutOfReach,
     "The server does not answer. Check its address, and the network, or try again later"},
    {kNoGreeting, "The server was reached but says nothing. Try again later"},
    {kNoFtpServer, "What answers at this address is no FTP server. Check it on the Ftp page"},
    {kLogInRefused, "The server refused user or password. Check both on the Ftp page"},
    {kServerBusy, "The server takes nobody else just now. Try again later"},
    {kProtectionWanted, "The server wants a protected connection. Put ftpes:// before its address"},
    {kNoProtection, "The server gives no safe protection, so nothing was sent. Ask who runs it"},
    {kCertificateExpired,
     "The server's certificate has expired, so nothing was sent. Ask who runs it"},
    {kCertificateEarly,
     "The server's certificate is not valid yet, so nothing was sent. Check this computer's date"},
    {kCertificateOwn,
     "The server has signed its certificate itself, so nothing was sent. Ask who runs it"},
    {kCertificateForeign,
     "Nobody whom this computer trusts vouches for the server, so nothing was sent. Ask who runs "
     "it"},
    {kCertificateOfOther,
     "The certificate is for another server name, so nothing was sent. Check the address"},
    {kNoTrustStore,
     "This computer's list of trusted certificates can not be read, so nothing was sent"},
    {kNoDirectory, "The server has no such directory. Check Server Directory on the Ftp page"},
    {kNoLocalFolder, "The folder for received files can not be opened"},
    {kListRefused, "The server refused to list the directory"},
    {kListTooLong, "The server's list has no end, so it was given up"},
    {kFileRefused, "The server refused this file. It may have gone; list again"},
    {kNoDataConnection,
     "The server opens no way for data. Change \"Server specifies data port\" on the Ftp page"},
    {kStalled, "Nothing has come from the server for too long. Press Connect to log in again"},
    {kFileCutShort, "The file came in part only. Download it again"},
    {kFileHasGrown, "The file grew while it came. Download it again when it is complete"},
    {kDiskFailed, "The file could not be written to the disk, which may be full"},
    {kLandingFailed, "The file could not be made in the folder of received files"},
    {kNotOffered, "This can not be done"},
    {kBusy, "Something else is being asked of the server just now"},
    {kProcessInTrouble,
     "The computer has too much open to connect. Close a program, then try again"},
};

static_assert(std::ranges::all_of(kWords, [](const Words& words) {
  return words.failure < 0 && !words.text.empty() && words.text.size() <= kMostBytes;
}));

}  // namespace

std::string_view WordsFor(int failure) {
  if (failure >= 0) return {};
  const Words* const found = std::ranges::find(kWords, failure, &Words::failure);
  return found == std::end(kWords) ? WordsFor(kConnectionLost) : found->text;
}

}  // namespace tavlo::platform
