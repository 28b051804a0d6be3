#pragma once

#include "forms/configuration_form.h"
#include "forms/main_form.h"
#include "intake/author_profiles.h"
#include "intake/import_chain.h"
#include "intake/import_list.h"
#include "window/main_window.h"

namespace tavlo::intake {

/// Empties all import directories by pressing the buttons of the Import view, which need not show.
/// Afterwards the view stands as before. On the loop's thread; what it is handed must outlive it.
class AutoImport : public ImportChain {
 public:
  AutoImport(window::MainWindow& window, ImportList& list, AuthorProfiles& profiles);

  void AutoImportAll() override;

 private:
  void ImportDirectory(int number);
  /// Shows what stands now in the directory that the view is on.
  void ShowDirectoryAgain();

  forms::MainForm& form_;
  forms::ConfigurationForm& config_;
  ImportList& list_;
  AuthorProfiles& profiles_;
};

}  // namespace tavlo::intake
