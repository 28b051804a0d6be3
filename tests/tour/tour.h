#pragma once

#include <QString>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "base/timer_queue.h"
#include "platform/qt/qt_loop.h"

namespace tavlo::tour {

/// One thing that the typist does, and how one can tell that the deck answered.
struct Step {
  std::string says;
  std::function<void()> act;
  std::function<bool()> seen;
  /// True when what it began is over, so that it is done again unless it was seen. A preview ends
  /// by the clock, however little of it a machine that stands still now and then has sounded. Empty
  /// for what does not end by itself.
  std::function<bool()> over = {};
  /// Name of the picture to take once it was seen, less the step's number; empty for none.
  std::string picture = {};
};

/// Takes the steps one after the other beside the running program, prints what was seen of each and
/// keeps the pictures. It moves on a timer of the program's own loop, so it goes on under message
/// boxes and inside waits as a person would.
class Tour {
 public:
  /// The first step is printed with the number `first`.
  Tour(platform::qt::QtLoop& loop, QString pictureFolder, std::vector<Step> steps,
       std::size_t first = 1);

  void Begin() { tick_.Start(); }
  /// The number after that of the last step.
  std::size_t After() const { return first_ + steps_.size(); }
  /// True once every step was seen.
  bool Succeeded() const { return next_ == steps_.size() && missed_ == 0; }

 private:
  void Tick();
  void Act(const Step& step);
  /// What the step began was over at each of the last looks.
  bool IsOver(const Step& step);
  void Finish(const Step& step, bool seen);
  std::size_t Number() const { return first_ + next_; }
  void TakePicture(const std::string& name) const;

  platform::qt::QtLoop& loop_;
  const QString pictureFolder_;
  const std::vector<Step> steps_;
  const std::size_t first_;
  base::Timer tick_;
  std::size_t next_ = 0;
  std::size_t missed_ = 0;
  bool acted_ = false;
  int looks_ = 0;
  int looksOver_ = 0;
};

}  // namespace tavlo::tour
