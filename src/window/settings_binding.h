#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/loop.h"
#include "forms/configuration_form.h"
#include "forms/main_form.h"
#include "store/settings_store.h"
#include "store/work_folders.h"
#include "window/bindings.h"
#include "window/row_binding.h"
#include "window/settings_saver.h"

namespace tavlo::window {

/// Moves the values of the settings into their controls and back. After `Load` the controls are the
/// live copy: who needs a setting reads its control.
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
  /// that is missing leaves its control as it was. The Ftp page and the author profile show their
  /// first rows.
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
  /// Writes the mini-player's place in a transaction of its own, unless it is stored already.
  bool SavePlayerPlace();
  /// Tries again what could not be saved. True when nothing is left unsaved.
  bool Flush();

  /// The server profile that shows on the Ftp page.
  RowBinding& FtpProfile() { return ftpProfile_; }
  /// The author profile that shows on the Import view.
  RowBinding& AuthorProfile() { return authorProfile_; }
  /// For whoever saves rows of another table.
  SettingsSaver& Saver() { return saver_; }

  /// The fields of the one row of the general settings.
  const std::vector<Binding>& Bindings() const { return bindings_; }

 private:
  void StoreChanged();
  store::Assignments Collect(Saving saving) const;
  /// Those of them that are not what the database holds.
  store::Assignments Changed(Saving saving) const;
  bool Write(const store::Assignments& fields);

  forms::ConfigurationForm& config_;
  store::SettingsStore& settings_;
  const store::WorkFolders& folders_;
  SettingsSaver saver_;
  const std::vector<Binding> bindings_;
  RowBinding ftpProfile_;
  RowBinding authorProfile_;
  bool loading_ = false;
  bool loaded_ = false;
};

}  // namespace tavlo::window
