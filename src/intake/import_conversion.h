#pragma once

#include <string>

namespace tavlo::intake {

/// What the Import list asks for when it meets a file that has to be converted first.
class ImportConversion {
 public:
  virtual ~ImportConversion() = default;

  /// Converts a DSS file of the import directory on show into a wave beside it, which takes its
  /// place. `fileName` is the bare name and ends in ".wav" afterwards, whatever the outcome. A
  /// failure is told by a message box, and the source stays.
  virtual void ConvertImportDssFile(std::string& fileName) = 0;
};

}  // namespace tavlo::intake
