#pragma once

#include <QByteArray>
#include <QString>

#include "support/sound_server.h"

namespace tavlo::tour {

/// What the desk of a tour has for the deck: a file manager, a word processor whose start command
/// is "writer", and a service that shows notifications, on a message bus of its own. Each of them
/// notes in the home what was asked of it. To be made once, before the first day; it ends with its
/// object.
class Desk {
 public:
  Desk();

 private:
  void StartBus();

  test::ChildProcess bus_;
  test::ChildProcess notifier_;
};

QString InHome(const QString& below);
/// Empty when there is no such file.
QByteArray ContentsOf(const QString& path);

// What is noted.

/// The address of the folder that the file manager was asked to show last.
QByteArray ShownFolder();
/// The arguments of the last start of the word processor that had some, a line each.
QByteArray WriterArguments();
/// All that the letter in the word processor says.
QByteArray Letter();
/// Title and text of the notification that shows, a line each; empty while none does.
QByteArray Notification();

}  // namespace tavlo::tour
