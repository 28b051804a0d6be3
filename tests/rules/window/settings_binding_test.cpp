#include "window/settings_binding.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/settings_bench.h"

namespace tavlo::test {
namespace {

using store::Table;
using window::Binding;

struct SettingsBindingTest : testing::Test, SettingsBench {
  std::vector<std::string> NamesOfLastSave() const {
    std::vector<std::string> names;
    for (const auto& [name, value] : database.Saves.back().fields) names.push_back(name);
    return names;
  }
  /// What shows the one row of the general settings.
  std::vector<Binding> GeneralBindings() const {
    std::vector<Binding> general = binding.Bindings();
    std::erase_if(general, [](const Binding& field) {
      return !store::FindField(Table::GeneralSettings, field.field);
    });
    return general;
  }
};

TEST_F(SettingsBindingTest, LoadShowsTheStoredValueOfEachFieldInItsControl) {
  database.With("CustomEq12", "-7").With("AutoRefreshMode", "-1").With("PlayerTop", "4711");
  binding.Load();
  EXPECT_EQ(config.txtEqCustom[11].Value.Get(), "-7");
  EXPECT_TRUE(config.chkAutoRefreshMode.Value);
  EXPECT_EQ(main.txtPlayerTop.Value.Get(), "4711");
  EXPECT_EQ(config.txtFtpName.Value.Get(), "Ftp1");
  EXPECT_EQ(config.txtFtpServerID.Value.Get(), "1");
  EXPECT_TRUE(config.chkFtpPassiveMode.Value);
}

TEST_F(SettingsBindingTest, HandThatComesBeforeTheSettingsStoresNothing) {
  database.With("Speed", "85").With("Volume", "41000").With("FaciaImagePointer", "2");
  main.txtFasciaImagePointer.Value = "1";
  main.txtVolume.Value = "65535";
  EXPECT_TRUE(database.Saves.empty());
  binding.Load();
  EXPECT_TRUE(database.Saves.empty());
  EXPECT_EQ(main.txtSpeed.Value.Get(), "85");
  EXPECT_EQ(main.txtVolume.Value.Get(), "41000");
  EXPECT_EQ(main.txtFasciaImagePointer.Value.Get(), "2");
}

TEST_F(SettingsBindingTest, EveryFieldIsShownAsItIsStoredAndStoredAsItIsShown) {
  const std::vector<Binding> fields = GeneralBindings();
  const auto value = [](const Binding& field, const char* word, const char* truth) {
    return field.text ? word + std::string(field.field) : truth;
  };
  for (const Binding& field : fields) database.With(field.field, value(field, "stored ", "-1"));
  binding.Load();
  for (const Binding& field : fields) {
    EXPECT_EQ(field.Shown(), value(field, "stored ", "-1")) << field.field;
    field.Show(value(field, "typed ", "0"));
  }
  EXPECT_TRUE(binding.SaveConfigurationFields());
  EXPECT_TRUE(binding.SavePlayerPlace());
  for (const Binding& field : fields) {
    EXPECT_EQ(database.Value(field.field), value(field, "typed ", "0"));
  }
}

TEST_F(SettingsBindingTest, LoadCountsAsAChange) {
  std::string seen;
  config.txtSubjectHeading.OnChange = [&] { seen = config.txtSubjectHeading.Value; };
  database.With("SubjectHeading", "Patient");
  binding.Load();
  EXPECT_EQ(seen, "Patient");
}

TEST_F(SettingsBindingTest, KindOfPedalIsLoadedBeforeItsPort) {
  std::string kind;
  config.txtSerialFootPedalComPort.OnChange = [&] { kind = config.txtUSBorSerialFootPedal.Value; };
  database.With("USBorSerialFootPedal", "S");
  binding.Load();
  EXPECT_EQ(kind, "S");
}

TEST_F(SettingsBindingTest, FieldThatIsMissingLeavesItsControlAsItWas) {
  config.txtWordProcessorPath.Value = "before";
  database.Without(Table::GeneralSettings, "WordProcessorPath");
  binding.Load();
  EXPECT_EQ(config.txtWordProcessorPath.Value.Get(), "before");
}

TEST_F(SettingsBindingTest, CheckBoxIsOnForStoredTruthOnly) {
  database.With(Table::FtpSettings, "FtpDeleteFileCheck", "1");
  binding.Load();
  EXPECT_FALSE(config.chkFtpFileDeleteMode.Value);
}

TEST_F(SettingsBindingTest, WindowsPathOfAnOldDatabaseIsShownAsThePathHere) {
  database.With("WavQueuePath", "C:\\Lyrane\\TavloDeck\\Files\\ImportQueue")
      .With("Ew2QueuePath", "/mnt/share/drop");
  binding.Load();
  EXPECT_EQ(config.txtWavQueuePath.Value.Get(), "/root/Files/ImportQueue");
  EXPECT_EQ(config.txtEw2QueuePath.Value.Get(), "/mnt/share/drop");
}

TEST_F(SettingsBindingTest, LoadingWritesNothing) {
  binding.Load();
  EXPECT_TRUE(database.Saves.empty());
}

TEST_F(SettingsBindingTest, ValueThatAHandlerCorrectsWhileLoadingIsSaved) {
  main.txtSpeed.OnChange = [&] { main.txtSpeed.Value = "100"; };
  database.With("Speed", "fast");
  binding.Load();
  EXPECT_EQ(database.Value("Speed"), "100");
}

TEST_F(SettingsBindingTest, LoadingAgainShowsWhatAnUpgradeHasWritten) {
  binding.Load();
  database.With("Speed", "80");
  binding.Load();
  EXPECT_EQ(main.txtSpeed.Value.Get(), "80");
}

TEST_F(SettingsBindingTest, EmptySettingsThatNoRuleCanUseAreFilled) {
  database.With("AutoBackspace", "").With("AutoPreview", "").With("WindIncrement", "");
  binding.Load();
  binding.FillEmptySettings();
  EXPECT_EQ(config.txtAutoBackspace.Value.Get(), "0");
  EXPECT_EQ(config.txtAutoPreview.Value.Get(), "5");
  EXPECT_EQ(config.txtWindIncrement.Value.Get(), "3");
}

TEST_F(SettingsBindingTest, FilledSettingsAreSavedWhenTheConfigurationIs) {
  database.With("AutoPreview", "");
  binding.Load();
  binding.FillEmptySettings();
  EXPECT_EQ(database.Value("AutoPreview"), "");
  EXPECT_TRUE(binding.SaveConfigurationFields());
  EXPECT_EQ(database.Value("AutoPreview"), "5");
}

TEST_F(SettingsBindingTest, SettingsThatHoldSomethingAreNotFilled) {
  database.With("AutoBackspace", "0").With("WindIncrement", "7");
  binding.Load();
  binding.FillEmptySettings();
  EXPECT_EQ(config.txtAutoBackspace.Value.Get(), "0");
  EXPECT_EQ(config.txtWindIncrement.Value.Get(), "7");
}

TEST_F(SettingsBindingTest, PromptsAreOnForYesAlone) {
  binding.Load();
  binding.TakeAudioPrompts();
  EXPECT_TRUE(binding.AudioPromptsOn);
  config.txtAudioPrompts.Value = "y";
  binding.TakeAudioPrompts();
  EXPECT_FALSE(binding.AudioPromptsOn);
}

TEST_F(SettingsBindingTest, DaysToKeepCompletedDocumentsAreReadFromTheRow) {
  database.With("DeleteCompletedFiles", "14");
  binding.TakeDeleteCompletedFiles();
  EXPECT_EQ(binding.DeleteCompletedFiles, 14);
}

TEST_F(SettingsBindingTest, DaysThatOverflowAByteLeaveTheValueAsItWas) {
  database.With("DeleteCompletedFiles", "300");
  binding.TakeDeleteCompletedFiles();
  EXPECT_EQ(binding.DeleteCompletedFiles, 0);
}

TEST_F(SettingsBindingTest, ConfigurationIsSavedInOneTransactionInTheListedOrder) {
  binding.Load();
  EXPECT_TRUE(binding.SaveConfigurationFields());
  ASSERT_EQ(database.Saves.size(), 1u);
  const std::vector<std::string> expected{
      "AutoBackspace", "AutoPreview", "WindIncrement", "AccelerateWindIncrementFlag",
      "SubjectHeading", "AudioPromptsFlag", "MinimizeMiniPlayerFlag", "WordProcessorPath",
      "AlwaysOnTopFlag", "SkipBegEndFlag", "SwapRewFwdPedalFlag", "ViewDelay", "WavConvMode",
      "AutoQueueDocumentFlag", "DeleteCompletedFiles", "SerialFootPedalComPort", "Ew2QueuePath",
      "Ds2QueuePath", "WavQueuePath", "Eu2QueuePath", "PromptVolume", "USBorSerialFootPedal",
      "CustomEq1", "CustomEq2", "CustomEq3", "CustomEq4", "CustomEq5", "CustomEq6", "CustomEq7",
      "CustomEq8", "CustomEq9", "CustomEq10", "CustomEq11", "CustomEq12", "CustomDisplay",
      "ShowCustomDisplay", "MixerSelection",
      // Those that go along with the row.
      "AutoImportMode", "AutoRefreshMode", "WorkWaitingAlertMode", "NewDictationAlertInterval",
      "AutoQueueRefreshInterval", "EqualizerChoice", "EqualizerEnableFlag", "PlayStopKey",
      "PlayHeldKey", "RewindHeldKey", "ForwardHeldKey", "ToBeginningKey", "ToEndKey", "SlowerKey",
      "FasterKey", "NormalSpeedKey", "CompleteKey", "SaveKey", "SkipKey", "BusSaysNothingFlag"};
  EXPECT_EQ(NamesOfLastSave(), expected);
}

TEST_F(SettingsBindingTest, DialogsControlsAreNotSavedBeforeItsRowIs) {
  binding.Load();
  config.txtAutoImport.Value = "Y";
  config.chkAutoRefreshMode.Value = true;
  EXPECT_TRUE(database.Saves.empty());
  binding.SaveConfigurationFields();
  EXPECT_EQ(database.Value("AutoImportMode"), "Y");
  EXPECT_EQ(database.Value("AutoRefreshMode"), "-1");
}

TEST_F(SettingsBindingTest, MainWindowsFieldIsSavedAloneAtEachChange) {
  binding.Load();
  main.txtSpeed.Value = "90";
  ASSERT_EQ(database.Saves.size(), 1u);
  EXPECT_EQ(NamesOfLastSave(), std::vector<std::string>{"Speed"});
  main.txtSpeed.Value = "90";
  EXPECT_EQ(database.Saves.size(), 1u);
}

TEST_F(SettingsBindingTest, PlaceOfTheMiniPlayerIsSavedInATransactionOfItsOwnOnly) {
  binding.Load();
  main.txtPlayerTop.Value = "10";
  main.txtPlayerLeft.Value = "20";
  main.txtTitleBarHeight.Value = "30";
  EXPECT_TRUE(database.Saves.empty());
  EXPECT_TRUE(binding.SavePlayerPlace());
  ASSERT_EQ(database.Saves.size(), 1u);
  EXPECT_EQ(
      database.Saves[0].fields,
      (store::Assignments{{"PlayerTop", "10"}, {"PlayerLeft", "20"}, {"TitleBarHeight", "30"}}));
}

TEST_F(SettingsBindingTest, PlaceThatIsStoredAlreadyIsNotSavedAgain) {
  binding.Load();
  EXPECT_TRUE(binding.SavePlayerPlace());
  EXPECT_TRUE(database.Saves.empty());
  main.txtPlayerLeft.Value = "20";
  EXPECT_TRUE(binding.SavePlayerPlace());
  EXPECT_TRUE(binding.SavePlayerPlace());
  EXPECT_EQ(database.Saves.size(), 1u);
  EXPECT_EQ(database.Value("PlayerLeft"), "20");
}

TEST_F(SettingsBindingTest, PlaceThatCouldNotBeSavedIsTriedAgain) {
  binding.Load();
  const std::string before = database.Value("PlayerLeft");
  database.RefuseWrites("no");
  main.txtPlayerLeft.Value = "20";
  EXPECT_FALSE(binding.SavePlayerPlace());
  EXPECT_FALSE(binding.SavePlayerPlace());
  database.AcceptWrites();
  EXPECT_TRUE(binding.SavePlayerPlace());
  EXPECT_EQ(database.Value("PlayerLeft"), "20");
  main.txtPlayerLeft.Value = before;
  EXPECT_TRUE(binding.SavePlayerPlace());
  EXPECT_EQ(database.Value("PlayerLeft"), before);
}

TEST_F(SettingsBindingTest, ValueThatGoesBackToTheOneBeforeAFlushIsSavedAgain) {
  binding.Load();
  const std::string before = database.Value("Speed");
  database.RefuseWrites("no");
  main.txtSpeed.Value = "90";
  database.AcceptWrites();
  EXPECT_TRUE(binding.Flush());
  EXPECT_EQ(database.Value("Speed"), "90");
  main.txtSpeed.Value = before;
  EXPECT_EQ(database.Value("Speed"), before);
}

TEST_F(SettingsBindingTest, FtpRowIsSavedInItsOrderWithoutNumberAndFileDefinition) {
  binding.Load();
  binding.FtpProfile().Show(3);
  config.eServer.Value = "ftp.example.org";
  config.chkFtpPassiveMode.Value = false;
  EXPECT_TRUE(binding.FtpProfile().Save());
  EXPECT_EQ(database.Saves.back().table, Table::FtpSettings);
  EXPECT_EQ(database.Saves.back().row, 3);
  EXPECT_EQ(NamesOfLastSave(),
            (std::vector<std::string>{"FtpServerName", "FtpServerID", "FtpServerUserID",
                                      "FtpServerPassword", "FtpServerDir", "FtpDeleteFileCheck",
                                      "FtpAutoListDownloadCheck", "FtpPassiveModeCheck",
                                      "FtpParseGenericPointer"}));
  EXPECT_EQ(database.Value(Table::FtpSettings, 3, "FtpServerID"), "ftp.example.org");
  EXPECT_EQ(database.Value(Table::FtpSettings, 3, "FtpPassiveModeCheck"), "0");
}

TEST_F(SettingsBindingTest, FtpRowThatDoesNotExistIsNotShown) {
  binding.Load();
  binding.FtpProfile().Show(24);
  binding.FtpProfile().Show(25);
  binding.FtpProfile().Show(-1);
  EXPECT_EQ(binding.FtpProfile().Row(), 24);
  EXPECT_EQ(config.txtFtpName.Value.Get(), "Ftp25");
}

TEST_F(SettingsBindingTest, SaveThatFailsIsToldOnceFromTheTopOfTheLoop) {
  binding.Load();
  database.RefuseWrites("The disk is full.");
  main.txtSpeed.Value = "90";
  EXPECT_TRUE(loop.Shown.empty());
  loop.Yield();
  main.txtVolume.Value = "1";
  EXPECT_FALSE(binding.SaveConfigurationFields());
  loop.Yield();
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Settings");
  EXPECT_EQ(loop.Shown[0].text,
            "The settings can not be saved. The disk is full.\n"
            "They stay in effect until the Tavlo Deck ends.");
}

TEST_F(SettingsBindingTest, FailureIsToldAgainAfterASaveThatWentWell) {
  binding.Load();
  database.RefuseWrites("no");
  main.txtSpeed.Value = "90";
  database.AcceptWrites();
  main.txtSpeed.Value = "91";
  database.RefuseWrites("no");
  main.txtSpeed.Value = "92";
  loop.Yield();
  EXPECT_EQ(loop.Shown.size(), 2u);
}

TEST_F(SettingsBindingTest, WhatCouldNotBeSavedIsKeptAndSavedByTheNextFlush) {
  binding.Load();
  database.RefuseWrites("no");
  main.txtSpeed.Value = "90";
  config.txtSubjectHeading.Value = "Client";
  binding.SaveConfigurationFields();
  config.eUser.Value = "typist";
  binding.FtpProfile().Save();
  EXPECT_FALSE(binding.Flush());
  database.AcceptWrites();
  EXPECT_TRUE(binding.Flush());
  EXPECT_EQ(database.Value("Speed"), "90");
  EXPECT_EQ(database.Value("SubjectHeading"), "Client");
  EXPECT_EQ(database.Value(Table::FtpSettings, 0, "FtpServerUserID"), "typist");
  const std::size_t saves = database.Saves.size();
  EXPECT_TRUE(binding.Flush());
  EXPECT_EQ(database.Saves.size(), saves);
}

TEST_F(SettingsBindingTest, FlushDoesNotPutAnOlderValueOverALaterSave) {
  binding.Load();
  database.RefuseWrites("no");
  main.txtSpeed.Value = "90";
  database.AcceptWrites();
  main.txtSpeed.Value = "110";
  EXPECT_TRUE(binding.Flush());
  EXPECT_EQ(database.Value("Speed"), "110");
}

TEST_F(SettingsBindingTest, ValueThatWentBackToTheStoredOneIsNotOverwrittenByAFailedSave) {
  database.With("Speed", "100");
  binding.Load();
  database.RefuseWrites("no");
  main.txtSpeed.Value = "90";
  database.AcceptWrites();
  main.txtSpeed.Value = "100";
  EXPECT_TRUE(binding.Flush());
  EXPECT_EQ(database.Value("Speed"), "100");
}

TEST_F(SettingsBindingTest, FtpRowThatCouldNotBeSavedStillShowsItsValuesWhenItComesBack) {
  binding.Load();
  config.eServer.Value = "ftp.example.org";
  database.RefuseWrites("no");
  binding.FtpProfile().Save();
  binding.FtpProfile().Show(1);
  EXPECT_EQ(config.eServer.Value.Get(), "");
  binding.FtpProfile().Show(0);
  EXPECT_EQ(config.eServer.Value.Get(), "ftp.example.org");
}

}  // namespace
}  // namespace tavlo::test
