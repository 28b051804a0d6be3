#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace tavlo::test {

/// A sound file as an encoder made it.
struct Original {
  std::string name;
  std::string bytes;
};

/// What became of one. Its name is unique among those of its maker.
struct Mutant {
  std::string name;
  std::string bytes;
  /// The file is as long as this at least; behind the bytes it has no blocks on the disk.
  std::uint64_t size = 0;
};

/// Makes documents that harm whoever trusts them, always the same from the same seed: bits are
/// flipped, ends cut off, files spliced, numbers in headers driven to extremes, scripts put in the
/// place of sound, sizes claimed that nothing stands behind, names filled with what no typist
/// types.
class Mutations {
 public:
  /// `script` is a text that names what must not be touched.
  Mutations(std::vector<Original> originals, std::string script, unsigned seed);

  Mutant Next();

 private:
  std::size_t UpTo(std::size_t end);
  const Original& Any();
  void FlipBits(std::string& bytes);
  void Cut(std::string& bytes);
  void Splice(std::string& bytes);
  void DriveToExtremes(std::string& bytes);
  void Repeat(std::string& bytes);
  void PutScript(std::string& bytes);
  std::string NameFor(const std::string& original);

  const std::vector<Original> originals_;
  const std::string script_;
  std::mt19937 random_;
  int made_ = 0;
};

}  // namespace tavlo::test
