#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "store/settings_database.h"
#include "window/bindings.h"

namespace tavlo::simulation {

class Desk;

/// Holds what the controls say of the settings against what is stored: every field that has a
/// control, without exception.
class SettingsRules {
 public:
  /// Another run of the program begins.
  void Forget() { asLoaded_.clear(); }
  /// The empty text, or the first field that is stored in another way than its control says though
  /// nothing kept it from being saved. The program must be at work.
  std::string Broken(Desk& desk);

 private:
  struct Pair {
    std::string shown;
    std::string stored;
    bool operator==(const Pair&) const = default;
  };

  std::string BrokenField(Desk& desk, store::Table table, int row,
                          const std::vector<window::Binding>& bindings);

  /// Each field as it was found first in this run. What is stored and no rule can use is corrected
  /// as it is loaded, and saved when the configuration next closes.
  std::map<std::string_view, Pair> asLoaded_;
};

}  // namespace tavlo::simulation
