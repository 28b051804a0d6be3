#pragma once

#include "store/library_inspector.h"
#include "support/simulated_disk.h"

namespace tavlo::test {

/// Looks at libraries on the simulated disk: one that begins as those of Windows do is a foreign
/// one.
class SimulatedLibraries : public store::LibraryInspector {
 public:
  explicit SimulatedLibraries(SimulatedDisk& disk) : disk_(disk) {}

  store::LibraryFit Inspect(const std::string& path) override {
    if (!disk_.LetsOpen(path) || disk_.Look(path) != store::Entry::PlainFile) {
      return store::LibraryFit::NotKnown;
    }
    return disk_.Contents(path).starts_with("MZ") ? store::LibraryFit::Foreign
                                                  : store::LibraryFit::Fits;
  }

 private:
  SimulatedDisk& disk_;
};

}  // namespace tavlo::test
