#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace tavlo::fuzz {

/// A file in memory that takes the contents of one input after the other.
class ScratchFile {
 public:
  /// Its name ends as told. Ends the program when the machine gives it no such file.
  explicit ScratchFile(const std::string& ending = "");
  ~ScratchFile();
  ScratchFile(const ScratchFile&) = delete;

  const std::string& Path() const { return path_; }
  void Hold(std::span<const std::uint8_t> bytes) const;

 private:
  std::string path_;
  int handle_ = -1;
};

}  // namespace tavlo::fuzz
