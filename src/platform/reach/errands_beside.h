#pragma once

#include <string>
#include <utility>

#include "platform/reach/place_errands.h"

namespace tavlo::platform {

/// Errands that may stall wherever their path stands, as the start of a program does: a process
/// that is split closes copies of all that is open, and what is open on a share without an answer
/// keeps it waiting. They run on threads beside those of the places, so none of them holds the
/// loop, and one that is left behind keeps no place busy. On the loop's thread.
class ErrandsBeside : public Errands {
 public:
  /// `errands` must outlive it.
  explicit ErrandsBeside(PlaceErrands& errands) : errands_(errands) {}

  bool Run(const std::string& path, std::function<void(Sign&)> work) override {
    return errands_.Run(Beside(path), std::move(work));
  }
  bool OutOfReach(const std::string& path) override { return errands_.OutOfReach(Beside(path)); }

 private:
  /// Mounts have numbers from 0 on, and the places of other calls beside them from -1,000,000 down.
  static constexpr int kFirst = -2'000'000;

  Place Beside(const std::string& path) {
    return {.mount = kFirst - errands_.PlaceOf(path).mount, .mayStall = true};
  }

  PlaceErrands& errands_;
};

}  // namespace tavlo::platform
