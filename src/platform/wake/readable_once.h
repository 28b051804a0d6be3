#pragma once

#include <QSocketNotifier>

#include "base/listener.h"

namespace tavlo::platform {

/// Tells a listener once that a descriptor can be read. Needs the toolkit's event loop; lives on
/// its thread.
///
/// This is no wait of `DescriptorWaits`, whose call makes the descriptor quiet at once and is one
/// event of a loop. A listener makes nothing quiet: the descriptor can be read until a rule has
/// looked, perhaps much later, so this rests until it is asked again. It is asked after every look
/// at a pedal, and keeps its notifier, where a new wait would make a new one each time. And it
/// needs no `base::Loop`, so a pedal can be made before there is one.
class ReadableOnce {
 public:
  /// The descriptor must stay open for as long as this lives.
  explicit ReadableOnce(int descriptor);
  ReadableOnce(const ReadableOnce&) = delete;

  /// The next turn of the loop in which the descriptor can be read tells the listener, also one
  /// that only breathes. The listener that waited before is forgotten.
  void Tell(base::Listener& listener);
  /// Tells the listener that waits now, whatever the descriptor says.
  void TellNow();
  /// Tells no listener any more. True when one still waited.
  bool Forget();

 private:
  base::Listener* listener_ = nullptr;
  QSocketNotifier notifier_;
};

}  // namespace tavlo::platform
