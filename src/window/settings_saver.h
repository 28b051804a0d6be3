#pragma once

#include <map>
#include <string_view>
#include <utility>

#include "base/loop.h"
#include "store/settings_store.h"

namespace tavlo::window {

/// Writes settings, keeps what could not be written and tries it again every now and then. A
/// failure is told to the person once, until a save succeeds again. Called on the loop's thread.
class SettingsSaver {
 public:
  /// Both must outlive it, the loop's posted calls too.
  SettingsSaver(base::Loop& loop, store::SettingsStore& settings);

  /// What could not be written is tried again so often, without a word.
  static constexpr base::Duration kTryAgain = std::chrono::seconds{60};

  /// Writes in one transaction. False when it was refused; then the values are kept.
  bool Write(store::Table table, int row, const store::Assignments& fields);
  /// Tries again what could not be written. True when nothing is left unwritten.
  bool Flush();
  /// Takes a row as it is stored, for `IsStored`.
  void Learn(store::Table table, int row, const store::Record& stored);
  /// Whether the database holds just this value, as far as is known from what was learnt and
  /// written. A field that the row lacks counts as empty. Never while a value is kept that could
  /// not be written.
  bool IsStored(store::Table table, int row, const std::string& field,
                const std::string& value) const;
  /// Whether a value of the field is kept that could not be written.
  bool Keeps(store::Table table, int row, std::string_view field) const;
  /// The stored row, with the kept values in place of the stored ones. Empty when there is no such
  /// row or it cannot be read.
  store::Record Read(store::Table table, int row) const;
  /// How many rows the table has.
  int RowCount(store::Table table) const;

 private:
  bool Store(store::Table table, int row, const store::Assignments& fields);
  /// Runs `write` on everything that could not be written.
  void WriteUnsaved(bool (SettingsSaver::*write)(store::Table, int, const store::Assignments&));
  void TryAgain();
  void TellFailure();

  base::Loop& loop_;
  store::SettingsStore& settings_;
  bool failureTold_ = false;
  /// By table and row: what could not be written, and what is known to be stored.
  std::map<std::pair<store::Table, int>, store::Record> unsaved_;
  std::map<std::pair<store::Table, int>, store::Record> stored_;
  base::Timer tmrTryAgain_;
};

}  // namespace tavlo::window
