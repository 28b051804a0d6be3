#include "platform/libraries/patient_libraries.h"

#include <memory>

#include "platform/libraries/library_head.h"

namespace tavlo::platform {

store::LibraryFit PatientLibraries::Inspect(const std::string& path) {
  const auto fit = std::make_shared<store::LibraryFit>(store::LibraryFit::NotKnown);
  const bool answered = errands_.Run(path, [fit, path](Errands::Sign&) { *fit = FitByHead(path); });
  // What was left behind may be writing into the answer still.
  return answered ? *fit : store::LibraryFit::NotKnown;
}

}  // namespace tavlo::platform
