#pragma once

#include <string>

namespace tavlo::store {

enum class LibraryFit {
  Fits,
  Foreign,   ///< It is made for another system or another kind of processor, or is no library at
             ///< all.
  NotKnown,  ///< There is no such file, it can not be read, or its place gives no answer.
};

/// Tells whether a file is a library that this machine could load. Only its head is looked at:
/// nothing of it is ever run. Called on the loop's thread.
class LibraryInspector {
 public:
  virtual ~LibraryInspector() = default;

  virtual LibraryFit Inspect(const std::string& path) = 0;
};

}  // namespace tavlo::store
