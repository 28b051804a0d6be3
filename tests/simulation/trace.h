#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace tavlo::simulation {

/// What happened, line by line. All lines go into a digest by which two runs are compared; the last
/// ones are kept to be read.
class Trace {
 public:
  /// `aloud` prints every line as it comes.
  explicit Trace(bool aloud = false) : aloud_(aloud) {}

  void Note(std::string_view line);
  /// Something that is compared and not read.
  void Fold(std::string_view detail);
  void EndStep() { digests_.push_back(digest_); }

  /// One digest for each step.
  const std::vector<std::uint64_t>& Digests() const { return digests_; }
  std::string LastLines() const;

 private:
  bool aloud_;
  std::uint64_t digest_ = 0xCBF29CE484222325U;
  std::vector<std::uint64_t> digests_;
  std::deque<std::string> lines_;
};

/// Bytes as one can read them: what is no printable character stands as its number.
std::string Readable(std::string_view bytes);

}  // namespace tavlo::simulation
