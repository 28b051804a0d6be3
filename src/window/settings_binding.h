#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/loop.h"
#include "forms/configuration_form.h"
#include "forms/main_form.h"
#include "store/settings_store.h"
#include "store/work_folders.h"

namespace tavlo::window {

/// How the value of a control comes into the database.
enum class Saving {
  Listed,     ///< Assigned when the configuration closes.
  WithRow,    ///< Goes along with that row, after what is assigned.
  AtChange,   ///< Written whenever it changes: its control stands on the main window.
  WithPlace,  ///< Written with the place of the mini-player only.
  WithFtpRow  ///< Assigned when the row of the Ftp page is saved.
};

/// One field and the control that shows it: a text, or a check box for a stored truth.
struct Binding {
  std::string_view field;
  Saving saving;
  forms::Text* text = nullptr;
  forms::Choice* check = nullptr;

  std::string Shown() const;
  void Show(const std::string& stored) const;
};

/// Says which control shows which field of the settings, and moves the values both ways. After
/// `Load` the controls are the live copy: who needs a setting reads its control.
///
/// A save that fails is told once, until one succeeds again. Its values are kept, and `Flush` tries
/// again.
class SettingsBinding {
 public:
  /// All of it must outlive the binding, the loop's posted calls too.
  SettingsBinding(base::Loop& loop, forms::MainForm& main, forms::ConfigurationForm& config,
                  store::SettingsStore& settings, const store::WorkFolders& folders);

  /// Whether prompts are spoken.
  bool AudioPromptsOn = false;
  /// Days after which completed documents are purged; 0 keeps them.
  std::uint8_t DeleteCompletedFiles = 0;

  /// Shows the stored values. This counts as a change of each control: its handler runs. A field
  /// that is missing leaves its control as it was. The Ftp page shows its first row.
  void Load();
  /// True inside `Load`, for handlers that act on a choice and not on a value.
  bool Loading() const { return loading_; }
  /// Fills the settings that no rule can use empty. They are saved when the configuration closes.
  void FillEmptySettings();
  /// Sets `AudioPromptsOn` from its setting.
  void TakeAudioPrompts();
  /// Reads `DeleteCompletedFiles` from the stored row. What is no byte leaves it as it was.
  void TakeDeleteCompletedFiles();

  /// Writes the fields of the configuration in one transaction, in the order of the binding.
  bool SaveConfigurationFields();
  /// Writes the mini-player's place in a transaction of its own.
  bool SavePlayerPlace();
  /// Tries again what could not be saved. True when nothing is left unsaved.
  bool Flush();

  /// The row of the Ftp page, from 0.
  int FtpRow() const { return ftpRow_; }
  /// Shows another row and forgets what the page held. A row that does not exist is not shown.
  void ShowFtpRow(int row);
  /// Writes the row that shows, in a transaction of its own.
  bool SaveFtpRow();

  const std::vector<Binding>& Bindings() const { return bindings_; }

 private:
  void StoreChanged();
  store::Assignments Collect(Saving saving) const;
  bool Write(store::Table table, int row, const store::Assignments& fields);
  void TellFailure();

  base::Loop& loop_;
  forms::ConfigurationForm& config_;
  store::SettingsStore& settings_;
  const store::WorkFolders& folders_;
  std::vector<Binding> bindings_;
  /// What the database holds of the fields that are written at each change.
  std::map<std::string_view, std::string> stored_;
  int ftpRow_ = 0;
  bool loading_ = false;
  bool failureTold_ = false;
  /// What a failed save should have written, by table and row.
  std::map<std::pair<store::Table, int>, store::Record> unsaved_;
};

}  // namespace tavlo::window
