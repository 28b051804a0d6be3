#pragma once

namespace tavlo::shell {

/// The steps of rooms that are still to be built, so that load, views and exit keep their places. A
/// step does nothing until its room takes it out of here.
class Annex {
 public:
  virtual ~Annex() = default;

  virtual void UpgradeDatabase() {}
};

}  // namespace tavlo::shell
