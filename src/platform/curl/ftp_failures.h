#pragma once

#include <string_view>

#include "ftp/ftp_client.h"

namespace tavlo::platform {

/// What may go wrong with a server, as results of the client, beside those that every client has.
enum FtpFailure : int {
  // Of the file; the log-in ends with them all the same.
  kFileCutShort = ftp::FtpClient::kFirstOfTheFile,
  kDiskFailed = -51,  ///< What came could not be written.
  kFileHasGrown = -52,
  // The same; the log-in stands.
  kFileRefused = -53,

  kConnectionLost = ftp::FtpClient::kFirstOwn,
  kNoAddress = -101,      ///< The profile's server is none.
  kUnknownServer = -102,  ///< Its name leads nowhere.
  kOutOfReach = -103,     ///< Nobody answers at its address.
  kNoGreeting = -104,     ///< It was reached and says nothing.
  kNoFtpServer = -105,    ///< It says what no FTP server says.
  kLogInRefused = -106,
  kServerBusy = -107,
  kProtectionWanted = -108,  ///< The server takes no log-in without TLS.
  kNoProtection = -109,      ///< TLS is wanted and the server has none, or none that is safe.
  kCertificateExpired = -110,
  kCertificateEarly = -111,
  kCertificateOwn = -112,      ///< The server has signed it itself.
  kCertificateForeign = -113,  ///< Nobody who is trusted has signed it.
  kCertificateOfOther = -114,  ///< It was made out to another name.
  kNoTrustStore = -115,
  kNoDirectory = -116,
  kNoLocalFolder = -117,
  kListRefused = -118,
  kListTooLong = -119,
  kNoDataConnection = -120,
  kStalled = -121,           ///< Not a byte for as long as is waited.
  kLandingFailed = -122,     ///< The file could not be made.
  kNotOffered = -123,        ///< The client does not do that.
  kBusy = -124,              ///< It waits for something else.
  kProcessInTrouble = -125,  ///< No thread or descriptor is left.
};

/// The failure in words for the person at the deck, 128 bytes at most. Empty for what is none.
std::string_view WordsFor(int failure);

}  // namespace tavlo::platform
