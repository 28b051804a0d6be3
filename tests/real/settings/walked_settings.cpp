#include "settings/walk.h"
#include "settings/walk_acts.h"
#include "support/keys.h"

namespace tavlo::test {
namespace {

using forms::ConfigurationForm;
using forms::MainForm;
using enum store::Table;

std::string Truth(bool on) { return on ? "-1" : "0"; }

std::vector<WalkedSetting> OnTheDeck() {
  return {
      {GeneralSettings, "FaciaImagePointer", Turn::First, ClickFace, ExpectFaceOfItsNumber},
      {GeneralSettings, "Volume", Turn::First, SlideVolume,
       Holds(GeneralSettings, "Volume", [](Walk& w) { return w.Main().sldVol.Value.Get(); })},
      {GeneralSettings, "Speed", Turn::First, SlideSpeedWhilePlaying,
       Holds(GeneralSettings, "Speed",
             [](Walk& w) { return w.program.Rooms().engine.PlaySpeedPercent; })},
      {ImportAuthors, "AuthorLastName", Turn::First,
       FilledProfile(&MainForm::txtImportAuthorLastName, "Weber"), SentAs("AuthorLastName", 2)},
      {ImportAuthors, "AuthorID", Turn::First, FilledProfile(&MainForm::txtImportAuthorID, "77"),
       SentAs("AuthorID", 3)},
      {ImportAuthors, "Department", Turn::First, FilledProfile(&MainForm::txtImportDepartment, "4"),
       SentAs("Department", 10)},
      {ImportAuthors, "Worktype", Turn::First, FilledProfile(&MainForm::txtImportWorktype, "6"),
       SentAs("Worktype", 12)},
      {ImportAuthors, "Subject", Turn::First, FilledProfile(&MainForm::txtImportSubject, "Knee"),
       SentAs("Subject", 13)},
      {ImportAuthors,
       "SystemID",
       Turn::First,
       FilledProfile(&MainForm::txtImportSystemID, "8"),
       {},
       {},
       "No document name carries it."},
      {ImportAuthors,
       "Priority",
       Turn::First,
       GivePriority,
       {},
       "ImportSendingTest.TheProfileOnShowIsWrittenIntoTheName"},
      // A note from directory 3 goes under the first profile.
      {GeneralSettings, "ImportWavSynchronizeFlag", Turn::First, Unlink, ExpectNoteSent},
      {GeneralSettings, "FtpServerSelection", Turn::First, PickSecondServer,
       [](Walk& w) {
         w.Reach(w.Main().comboFtpServerNames);
         Holds(GeneralSettings, "FtpServerSelection",
               [](Walk& at) { return at.Main().comboFtpServerNames.ListIndex.Get(); })(w);
         w.GoHome();
       }},
  };
}

std::vector<WalkedSetting> OfPlayingAndItsWindow() {
  using Form = ConfigurationForm;
  return {
      {GeneralSettings, "AutoBackspace", Turn::First, Slid(&Form::sliderABS, 60),
       Holds(GeneralSettings, "AutoBackspace",
             [](Walk& w) { return w.Form().sliderABS.Value.Get(); }),
       "TransportTest.EveryRestartTakesTheAutoBackspaceOnce"},
      {GeneralSettings, "AutoPreview", Turn::First, Slid(&Form::sliderAutoPreview, 60),
       ExpectPreviewOfItsSeconds},
      {GeneralSettings,
       "WindIncrement",
       Turn::First,
       Slid(&Form::sliderWindIncrement, 30),
       {},
       "TransportTest.RewindJumpsBackWithAToneAndGoesOnAfterASecond"},
      {GeneralSettings,
       "AccelerateWindIncrementFlag",
       Turn::First,
       Ticked(&Form::chkAccelerateWindIncrement, false),
       {},
       "TransportTest.WindWithoutAccelerationKeepsItsSecond"},
      {GeneralSettings,
       "MinimizeMiniPlayerFlag",
       Turn::First,
       Ticked(&Form::chkMinimizeMiniPlayer, true),
       {},
       "MiniPlayer.MinimizesWhenToldAndComesBackWhenCalledAndAtTheEndsOfADocument"},
      {GeneralSettings, "AlwaysOnTopFlag", Turn::First, Ticked(&Form::chkAlwaysOnTop, true),
       ExpectAbove},
      {GeneralSettings,
       "PlayerTop",
       Turn::First,
       Pressed(&Form::cmdCenterMiniPlayer),
       {},
       "MiniPlayer.ComesBackToThePixelItWasDraggedToAtEveryPlayAndAfterARestart"},
      {GeneralSettings,
       "PlayerLeft",
       Turn::First,
       {},
       {},
       "MiniPlayer.ComesBackToThePixelItWasDraggedToAtEveryPlayAndAfterARestart"},
      {GeneralSettings, "AudioPromptsFlag", Turn::First, Ticked(&Form::chkAudioPrompts, true),
       [](Walk& w) {
         EXPECT_TRUE(w.program.Ask([&] { return w.program.Rooms().binding.AudioPromptsOn; }));
       }},
      {GeneralSettings,
       "PromptVolume",
       Turn::First,
       Slid(&Form::sldPromptVol, 70),
       {},
       "PromptVolumes.FollowTheSettingAndStayWithinTheSlider"},
  };
}

std::vector<WalkedSetting> OfTheWork() {
  using Form = ConfigurationForm;
  return {
      {GeneralSettings,
       "AutoQueueDocumentFlag",
       Turn::First,
       Ticked(&Form::chkAutoQueueJob, true),
       {},
       "FinishingTest.AutoQueueSelectsAndPreviewsTheNextUnsavedDocument"},
      {GeneralSettings, "SubjectHeading", Turn::First, Filled(&Form::txtSubjectHeading, "Patient"),
       ExpectHeading},
      {GeneralSettings, "DeleteCompletedFiles", Turn::First,
       Filled(&Form::txtDeleteCompletedFiles, "14"), ExpectOldDocumentGone},
      {GeneralSettings,
       "ViewDelay",
       Turn::First,
       Filled(&Form::txtViewDelay, "7"),
       {},
       {},
       "No rule acts on it."},
      {GeneralSettings,
       "WavConvMode",
       Turn::First,
       Pressed(&Form::cmdWavConvMode),
       {},
       {},
       "Every recording is converted to one rate."},
      {GeneralSettings,
       "WordProcessorPath",
       Turn::First,
       Filled(&Form::txtWordProcessorPath, "/usr/bin/writer --new"),
       {},
       "ReportProgram.WordProcessorGetsThePathOfTheReportAsOneArgument"},
      {GeneralSettings, "ShowCustomDisplay", Turn::First, Ticked(&Form::chkShowCustomDisplay, true),
       ExpectOwnLine},
      {GeneralSettings, "CustomDisplay", Turn::First,
       Filled(&Form::txtCustomDisplay, "Good morning"), ExpectOwnLine},
      {GeneralSettings,
       "WorkWaitingAlertMode",
       Turn::First,
       [](Walk& w) {
         Ticked(&Form::chkWorkWaitingAlertMode, true)(w);
         w.program.Click("optNewWorkWaitingPriority");
       },
       {},
       "WorkAlert.OnPriorityAPlainDocumentRaisesNothingAndLeavesThePriorityFigures"},
      {GeneralSettings, "NewDictationAlertInterval", Turn::First,
       Filled(&Form::txtNewDictationAlertInterval, "45"), TicksFor(45)},
      {GeneralSettings, "AutoImportMode", Turn::First, Ticked(&Form::chkAutoImportMode, true),
       ExpectNoteSent},
  };
}

std::vector<WalkedSetting> OfPedalsAndRefresh() {
  using Form = ConfigurationForm;
  return {
      {GeneralSettings,
       "SwapRewFwdPedalFlag",
       Turn::First,
       Ticked(&Form::chkSwapRewindForwardPedals, false),
       {},
       "FootPedalTest.SwappedPedalsWindTheOtherWay"},
      {GeneralSettings,
       "SkipBegEndFlag",
       Turn::First,
       Ticked(&Form::chkSkipBegEnd, true),
       {},
       "FootPedalTest.SecondPressCountsStrictlyBetweenATenthAndHalfASecond"},
      {GeneralSettings, "USBorSerialFootPedal", Turn::Second,
       [](Walk& w) {
         w.Reach(w.Form().optionSerial);
         w.hand.Tick(w.Form().optionSerial, true);
       },
       ExpectPedalOfItsPort},
      {GeneralSettings, "SerialFootPedalComPort", Turn::Second,
       Filled(&Form::txtSerialFootPedalComPort, "998"), ExpectPedalOfItsPort},
      {GeneralSettings, "AutoRefreshMode", Turn::Second,
       [](Walk& w) {
         Ticked(&Form::chkWorkWaitingAlertMode, false)(w);
         Ticked(&Form::chkAutoRefreshMode, true)(w);
       },
       ExpectRefreshesByItself},
      {GeneralSettings, "AutoQueueRefreshInterval", Turn::Second,
       Filled(&Form::txtAutoQueueRefreshInterval, "2"), TicksFor(2)},
  };
}

std::vector<WalkedSetting> OnTheOtherPages() {
  using Form = ConfigurationForm;
  using Folders = store::WorkFolders;
  std::vector<WalkedSetting> walked{
      {GeneralSettings, "EqualizerEnableFlag", Turn::First, Ticked(&Form::chkEqEnable, true),
       [](Walk& w) {
         EXPECT_TRUE(
             w.program.Ask([&] { return w.program.Rooms().engine.Player().EqualizerEnabled(); }));
       }}};
  for (std::size_t band = 0; band < forms::kEqualizerBands; ++band) {
    walked.push_back({GeneralSettings, "CustomEq" + std::to_string(band + 1), Turn::First,
                      Drawn(band), ExpectBand(band),
                      "EqualizerTest.EachStartClicksTheStoredCurveAgainSoThatItsTableIsWhatPlays"});
  }
  const std::vector<WalkedSetting> more{
      {GeneralSettings, "EqualizerChoice", Turn::First, SaveAndChooseCustom, ExpectBand(11)},
      {GeneralSettings, "MixerSelection", Turn::First, PickSecondDevice,
       Holds(GeneralSettings, "MixerSelection",
             [](Walk& w) { return w.program.Rooms().engine.Player().CurrentDevice(); })},
      {GeneralSettings, "Ew2QueuePath", Turn::First,
       FilledWithFolder(&Form::txtEw2QueuePath, "ew2"), SweptFrom(&Folders::Ew2QueuePath, "ew2")},
      {GeneralSettings, "Ds2QueuePath", Turn::First,
       FilledWithFolder(&Form::txtDs2QueuePath, "ds2"), SweptFrom(&Folders::Ds2QueuePath, "ds2")},
      {GeneralSettings, "Eu2QueuePath", Turn::First,
       FilledWithFolder(&Form::txtEu2QueuePath, "eu2"), SweptFrom(&Folders::Eu2QueuePath, "eu2")},
      {GeneralSettings, "WavQueuePath", Turn::First,
       FilledWithFolder(&Form::txtWavQueuePath, "import"), ExpectNoteSent},
      {FtpSettings, "FtpServerName", Turn::First, NameSecondServer,
       [](Walk& w) {
         w.Reach(w.Main().comboFtpServerNames);
         EXPECT_EQ(w.program.Ask([&] { return w.program.Rooms().ftpServers.ChosenName(); }),
                   "Clinic");
       }},
      {FtpSettings, "FtpServerID", Turn::First, Filled(&Form::eServer, "ftp.example.com"),
       LogsInWith("FtpServerID", [](const auto& profile) { return profile.address; })},
      {FtpSettings, "FtpServerUserID", Turn::First, Filled(&Form::eUser, "typist"),
       LogsInWith("FtpServerUserID", [](const auto& profile) { return profile.user; })},
      {FtpSettings, "FtpServerPassword", Turn::First, Filled(&Form::ePass, "quiet-Heron42"),
       LogsInWith("FtpServerPassword", [](const auto& profile) { return profile.password; })},
      {FtpSettings, "FtpServerDir", Turn::First, Filled(&Form::eServerDir, "dictations/new"),
       LogsInWith("FtpServerDir", [](const auto& profile) { return profile.directory; })},
      {FtpSettings, "FtpDeleteFileCheck", Turn::First, Ticked(&Form::chkFtpFileDeleteMode, true),
       LogsInWith("FtpDeleteFileCheck",
                  [](const auto& profile) { return Truth(profile.deleteFiles); })},
      {FtpSettings, "FtpAutoListDownloadCheck", Turn::First,
       Ticked(&Form::chkFtpAutoListAndDownload, true),
       LogsInWith("FtpAutoListDownloadCheck",
                  [](const auto& profile) { return Truth(profile.autoListAndDownload); })},
      {FtpSettings, "FtpPassiveModeCheck", Turn::First, Ticked(&Form::chkFtpPassiveMode, false),
       LogsInWith("FtpPassiveModeCheck",
                  [](const auto& profile) { return Truth(profile.passive); })},
      {FtpSettings, "FtpParseGenericPointer", Turn::First, PickNextAuthor,
       LogsInWith("FtpParseGenericPointer",
                  [](const auto& profile) { return profile.parseGenericPointer; })},
  };
  walked.insert(walked.end(), more.begin(), more.end());
  return walked;
}

std::vector<WalkedSetting> OnThePageOfTheKeys() {
  const auto chosen = [](const char* field, remote::AfarAction action, char letter) {
    return WalkedSetting{
        GeneralSettings, field, Turn::First,
        KeyChosen(action, keys::kControl, static_cast<std::uint32_t>(letter)),
        ExpectKey(action, std::string("Ctrl+") + static_cast<char>(letter - 'a' + 'A'))};
  };
  using enum remote::AfarAction;
  return {
      chosen("PlayStopKey", PlayStop, 'b'),
      chosen("PlayHeldKey", PlayHeld, 'd'),
      chosen("RewindHeldKey", RewindHeld, 'e'),
      chosen("ForwardHeldKey", ForwardHeld, 'f'),
      chosen("ToBeginningKey", ToBeginning, 'g'),
      chosen("ToEndKey", ToEnd, 'h'),
      chosen("SlowerKey", Slower, 'i'),
      chosen("FasterKey", Faster, 'j'),
      chosen("NormalSpeedKey", NormalSpeed, 'k'),
      chosen("CompleteKey", Complete, 'l'),
      chosen("SaveKey", Save, 'm'),
      chosen("SkipKey", Skip, 'n'),
      {GeneralSettings, "BusSaysNothingFlag", Turn::First,
       Ticked(&ConfigurationForm::chkBusSaysNothing, true), ExpectSilenceOnTheBus},
  };
}

}  // namespace

const std::vector<WalkedSetting>& WalkedSettings() {
  static const std::vector<WalkedSetting> all = [] {
    std::vector<WalkedSetting> walked = OnTheDeck();
    for (const auto& more : {OfPlayingAndItsWindow(), OfTheWork(), OfPedalsAndRefresh(),
                             OnTheOtherPages(), OnThePageOfTheKeys()}) {
      walked.insert(walked.end(), more.begin(), more.end());
    }
    return walked;
  }();
  return all;
}

const std::vector<FixedSetting>& FixedSettings() {
  static const std::vector<FixedSetting> all{
      {GeneralSettings, "TitleBarHeight", "The program measures it when its window first shows."},
      {GeneralSettings, "OEMLogo", "A reseller sets it before the deck is handed on."},
      {FtpSettings, "ID", "The number of the row."},
      {FtpSettings, "FtpListFileDefinition", "It is read and never written."},
      {ImportAuthors, "NumericSorter", "The number of the row."},
      {ImportAuthors, "Secretary", "It is kept from older releases, and no window shows it."},
      {RevisionInfo, "Revision", "The build writes its own."},
  };
  return all;
}

}  // namespace tavlo::test
