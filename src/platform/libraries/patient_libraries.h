#pragma once

#include "platform/reach/errands.h"
#include "store/library_inspector.h"

namespace tavlo::platform {

/// Looks at libraries on a disk that may stall: each look is an errand. Lives on the loop's thread.
class PatientLibraries : public store::LibraryInspector {
 public:
  /// `errands` must outlive it.
  explicit PatientLibraries(Errands& errands) : errands_(errands) {}

  store::LibraryFit Inspect(const std::string& path) override;

 private:
  Errands& errands_;
};

}  // namespace tavlo::platform
