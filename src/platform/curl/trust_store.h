#pragma once

#include <string>

namespace tavlo::platform {

/// Whose certificates are believed.
struct TrustStore {
  /// A file with the certificates, in PEM. Empty: those that the system trusts.
  std::string file;
};

}  // namespace tavlo::platform
