#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "window/bindings.h"
#include "window/settings_saver.h"

namespace tavlo::window {

/// Shows one row of a table that has several, and saves it: what stands in the controls belongs to
/// the row that shows. Rows are counted from 0. Called on the loop's thread.
class RowBinding {
 public:
  static constexpr int kNoRow = -1;

  /// The fields are shown and written in the order of their bindings. The saver and the controls
  /// must outlive it.
  RowBinding(SettingsSaver& saver, store::Table table, std::vector<Binding> bindings);
  RowBinding(const RowBinding&) = delete;

  /// The row that shows; kNoRow before one was shown.
  int Row() const { return row_; }
  int RowCount() const { return saver_.RowCount(table_); }
  /// Shows a row and forgets what the controls held; the handlers of their changes run. A field
  /// that the row lacks leaves its control as it was. False when there is no such row or it cannot
  /// be read: then all stays as it was.
  bool Show(int row);
  /// Writes the row that shows in one transaction, changed or not. A field that the row lacked when
  /// it was shown is not written: its control may still hold the value of another row. True when
  /// nothing of the row is left unsaved; what could not be saved is kept by the saver and shows
  /// again with its row.
  bool Save();

  /// Whether a control of the row holds another value than was saved last.
  bool HasEdits() const;

  /// Each of these saves the row that shows and then shows another. False when there is no such
  /// row, as behind the last one: then nothing is saved and all stays as it was. False, too, when
  /// the other row cannot be read: then the row is saved and stays.
  bool MoveTo(int row);
  bool MoveToFirst() { return MoveTo(0); }
  bool MoveToPrevious() { return MoveTo(row_ - 1); }
  bool MoveToNext() { return MoveTo(row_ + 1); }
  bool MoveToLast();

  /// The field's value in every row, in their order, as it was saved last, with success or not;
  /// empty where it is missing.
  std::vector<std::string> Values(std::string_view field) const;
  /// The first row with this value of the field; nothing when there is none.
  std::optional<int> Find(std::string_view field, std::string_view value) const;

  const std::vector<Binding>& Bindings() const { return bindings_; }

 private:
  SettingsSaver& saver_;
  const store::Table table_;
  const std::vector<Binding> bindings_;
  int row_ = kNoRow;
  /// Bindings whose controls hold a value of the row.
  std::vector<const Binding*> held_;
};

}  // namespace tavlo::window
