#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tavlo::simulation {

/// What one day is like. Every day draws its own: a random part of the faults, and some settings
/// that no typist would choose.
struct Conditions {
  /// Draws the conditions of the day with that seed.
  explicit Conditions(std::uint64_t seed);

  // Which troubles the day knows.
  bool diskFails = false;
  bool programIsKilled = false;
  bool powerFails = false;
  bool soundFails = false;
  bool settingsFail = false;
  bool foldersVanish = false;
  bool foldersAreLate = false;
  bool othersInterfere = false;
  bool handsInterrupt = false;
  bool machineSleeps = false;
  bool cablesGo = false;
  bool watcherFalters = false;
  bool watcherIsPolled = false;
  bool portIsPolled = false;
  bool othersMix = false;
  bool sessionEnds = false;
  bool hasNeighbour = false;
  bool serverFails = false;

  /// Folders below the root that lie on file systems of their own.
  std::vector<std::string> fileSystems;
  bool freshRoot = false;
  int documentsAtStart = 0;
  int completedAtStart = 0;
  /// Stored settings, by field, that differ from the shipped ones.
  std::vector<std::pair<std::string, std::string>> settings;
  /// The same of the first server profiles, one after the other.
  std::vector<std::vector<std::pair<std::string, std::string>>> servers;

  /// One line that says it all.
  std::string Described() const;
};

}  // namespace tavlo::simulation
