#pragma once

#include <QDateTime>
#include <QImage>
#include <QSocketNotifier>
#include <functional>
#include <memory>
#include <string>

#include "platform/beside/side_thread.h"

namespace tavlo::platform::qt {

/// Reads one picture at a time beside the loop, and says when it has come. A picture of the user's
/// own may be of any size and kind: one that is far too large, no picture, no plain file, or a
/// drawing that may refer to other files is none. Lives on the toolkit's thread.
class PictureReader {
 public:
  /// Runs beside the loop on each picture that was read.
  using Finish = QImage (*)(const QImage&);

  /// `came` gets each picture on the toolkit's thread, also while the loop only breathes, so it may
  /// touch nothing but widgets. What is no picture never comes.
  PictureReader(Finish finish, std::function<void(const QImage&)> came);
  PictureReader(const PictureReader&) = delete;

  /// Reads the picture at a path, unless it is the one that was read last and has not changed
  /// since. A picture that was asked for before and has not come will not come any more.
  void Read(const std::string& path);
  /// Whether the answer to the last Read is still to come.
  bool IsReading() const { return reading_; }

 private:
  struct Answer;
  struct Shared;

  void Take();

  const Finish finish_;
  const std::function<void(const QImage&)> came_;
  const std::shared_ptr<Shared> shared_;
  bool reading_ = false;
  unsigned lastAsked_ = 0;
  /// What was read last, as it was then.
  std::string path_;
  QDateTime stamp_;
  QSocketNotifier rung_;
  SideThread thread_;
};

}  // namespace tavlo::platform::qt
