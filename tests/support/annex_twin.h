#pragma once

#include <string>

#include "shell/annex.h"

namespace tavlo::test {

/// Writes down which steps of the rooms beside the deck came, in their order.
class AnnexTwin : public shell::Annex {
 public:
  std::string ran;

  void UpgradeDatabase() override { ran += "upgrade "; }
};

}  // namespace tavlo::test
