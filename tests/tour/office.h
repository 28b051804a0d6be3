#pragma once

#include <QString>
#include <QStringList>
#include <string>

#include "support/sound_server.h"

namespace tavlo::tour {

/// The office that sends dictations: an FTP server on loopback with a folder in the home. It ends
/// with its object.
class Office {
 public:
  static constexpr const char* kUser = "typist";
  static constexpr const char* kPassword = "quillpen";

  /// Waits until the server listens. Without one the address stays empty.
  void Open();
  /// Kills it under whoever is its guest.
  void GoAway() { server_.Kill(); }

  /// As a server profile has it.
  const std::string& Address() const { return address_; }
  /// Full path of what has that name on the server.
  static QString PathOf(const QString& name);
  /// What waits on the server.
  static QStringList Files();
  /// Puts a dictation of the Queue on the server under a name; `author` is one whose dictation it
  /// may be.
  static void Put(const QString& author, const QString& name);

 private:
  test::ChildProcess server_;
  std::string address_;
};

}  // namespace tavlo::tour
