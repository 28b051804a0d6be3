#pragma once

#include <string>
#include <vector>

namespace tavlo::test {

/// The folders into which other programs drop dictations.
enum class DropFolder { Current, Ftp, Ew2, Ds2, Eu2 };

/// A file that somebody writes into a drop folder. No two have the same bytes, so those tell who
/// it is wherever it stands, and under whatever name.
struct Delivery {
  DropFolder folder = DropFolder::Ew2;
  std::string name;
  std::string bytes;
  /// Its bytes where it arrives: as they were, with a header, or as the wave of a dictation.
  std::string arrived;
};

/// So many of every kind for every folder, always the same from the same seed.
std::vector<Delivery> MakeDeliveries(int count, unsigned seed);
/// So many recordings of half a minute, for the folder of recorders.
std::vector<Delivery> MakeRecordings(int count, unsigned seed);
/// So many that no pass changes, for one folder.
std::vector<Delivery> MakeWaves(int count, unsigned seed);

}  // namespace tavlo::test
