#pragma once

#include <thread>

namespace tavlo::platform {

/// Loads the libraries that decode everything but plain waves while the program does something
/// else, so that neither its start nor the first sound waits for them.
class DecoderLibraries {
 public:
  /// Begins to load them on a thread of its own, and returns at once. To be called once; whoever
  /// needs a decoder earlier waits for the rest. The destructor waits, too.
  void LoadBeside();

 private:
  std::jthread thread_;
};

}  // namespace tavlo::platform
