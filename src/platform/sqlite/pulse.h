#pragma once

#include "platform/reach/errands.h"

namespace tavlo::platform {

/// How the engine says that it goes on, to the errand in which it works; to nobody outside of one.
/// Of one thread at a time.
class Pulse {
 public:
  void Beat() const {
    if (sign_) sign_->Give();
  }

  /// Lets the pulse be heard for as long as it lives.
  class Heard {
   public:
    Heard(Pulse& pulse, Errands::Sign& sign) : pulse_(pulse) { pulse_.sign_ = &sign; }
    ~Heard() { pulse_.sign_ = nullptr; }
    Heard(const Heard&) = delete;

   private:
    Pulse& pulse_;
  };

 private:
  Errands::Sign* sign_ = nullptr;
};

}  // namespace tavlo::platform
