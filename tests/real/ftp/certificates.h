#pragma once

#include <string>

#include "support/temporary_folder.h"

namespace tavlo::test {

/// What a server shows for itself.
enum class Paper {
  Good,        ///< For 127.0.0.1, by the authority that the client trusts.
  Expired,     ///< The same, until yesterday.
  SelfSigned,  ///< For 127.0.0.1, by nobody but itself.
  Foreign,     ///< For 127.0.0.1, by an authority that the client does not know.
  OtherHost,   ///< By the right authority, for another machine.
};

/// Certificates that are made when they are asked for, with one key for all, and gone with this
/// object.
class Certificates {
 public:
  /// The store of the client: the authority that made the good ones.
  const std::string& Authority() const { return authority_; }
  /// The file with the key and the certificate; empty when it could not be made.
  std::string For(Paper paper) const;

  Certificates();

 private:
  std::string MakeAuthority(const std::string& name) const;
  /// Whether the openssl program did its work.
  bool Openssl(const std::string& words) const;

  const TemporaryFolder folder_;
  std::string authority_;
};

}  // namespace tavlo::test
