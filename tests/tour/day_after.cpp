// Documents out of the ordinary, and what is remembered overnight.
#include <QDir>
#include <QFile>
#include <cmath>

#include "day.h"
#include "desk.h"

namespace tavlo::tour {
namespace {

namespace column = forms::document_column;

QString InQueue(const QString& name) { return InHome("Lyrane/TavloDeck/Files/InQueue/" + name); }

void Put(const QString& path, const QByteArray& bytes) {
  QFile file(path);
  if (file.open(QFile::WriteOnly)) file.write(bytes);
}

/// A wave of 8000 Hz that holds no sample.
QByteArray EmptyWave() {
  return QByteArray::fromHex(
      "524946462400000057415645666d7420100000000100010040"
      "1f0000803e00000200100064617461"
      "00000000");
}

}  // namespace

void Day::AddOddDocuments(std::vector<Step>& steps) {
  const auto put = [this] {
    Put(InQueue("0001 0 Broken 1 3 9 2005 14 5 12 1 0 1 noise 0 0_.wav"), "this is no sound");
    Put(InQueue("0001 0 Silent 1 3 9 2005 14 6 12 1 0 1 hush 0 0_.wav"), EmptyWave());
    typist_.KeysUnseen({keys::kF5});
  };
  steps.push_back(
      {.says = "a file that is no sound and an empty one stand in the list",
       .act = put,
       .seen = [this] { return Ready() && RowOf("Broken") >= 0 && RowOf("Silent") >= 0; }});
  steps.push_back(ClickRowOf(
      "Broken", "what can not be played says so", [this] { return BoxOpen(); }, "unplayable"));
  steps.push_back(Keys({keys::kReturn}, "and may be completed",
                       [this] { return !BoxOpen() && Main().cmdComplete.Enabled; }));
  steps.push_back(Click("cmdComplete", "which takes it away",
                        [this] { return Ready() && RowOf("Broken") < 0; }));
  steps.push_back(ClickRowOf("Silent", "an empty dictation may be completed too",
                             [this] { return Main().cmdComplete.Enabled && !BoxOpen(); }));
  steps.push_back(Click("cmdComplete", "and goes the same way",
                        [this] { return Ready() && RowOf("Silent") < 0; }));
}

std::vector<Step> Day::NextMorning() {
  std::vector<Step> steps;
  steps.push_back({.says = "the next morning the splash stands again", .seen = [this] {
                     return program_.Deck().windows.splash.frmInitSplash.Visible.Get();
                   }});
  steps.push_back({.says = "and is clicked away",
                   .act = [this] { typist_.ClickUnseen(typist_.Middle("picIcon")); },
                   .seen = [this] { return Ready() && !BoxOpen(); }});
  steps.push_back(
      {.says = "speed, volume and the saved document are as they were left", .seen = [this] {
         return Rooms()->engine.PlaySpeedPercent == left_.speed &&
                Main().Slider1.Value == left_.speed - 100 &&
                Main().txtVolume.WholeNumber() == left_.volume &&
                Cell("Lindqvist", column::Saved) == "Saved";
       }});
  steps.push_back({.says = "and so is every setting",
                   .seen = [this] { return Settings() == left_.settings.data(); }});
  steps.push_back({.says = "the typist's own line stands on the deck", .seen = [this] {
                     return Main().lblCustomDisplay.Visible &&
                            Main().lblCustomDisplay.Value.Get() == "ward five";
                   }});
  steps.push_back({.says = "the Ftp view can be had again", .seen = [this] {
                     return Main().mnuViewFtp.Enabled && Main().bConnect.Enabled;
                   }});
  steps.push_back(
      {.says = "what was completed is older than two weeks and gone, and the purge log tells of it",
       .seen = [] {
         const QByteArray log =
             ContentsOf(InHome("Lyrane/TavloDeck/Reports/Tavlo_Deck_Purge_Log.txt"));
         return QDir(InHome("Lyrane/TavloDeck/Files/Completed")).isEmpty() &&
                log.contains("Broken") && log.contains("Silent") && !log.contains("Brown");
       }});
  AddChoosingKeys(steps);
  steps.push_back(ClickRowOf("Lindqvist", "the saved document is chosen",
                             [this] { return Playing() && Main().cmdPlay.Enabled; }));
  steps.push_back(Click(
      "cmdPlay", "and goes on where it was saved, in the mini-player's place",
      [this] {
        const forms::Window& window = Main().frmMain;
        const double back = program_.Deck().windows.configuration.sliderABS.Value / 10.0;
        const double saved = static_cast<double>(Rooms()->documentInWork.SavedPosition) /
                             Rooms()->engine.File().SampleRate();
        return Playing() && saved > 0 && Seconds() > saved - back && Seconds() < saved - back + 4 &&
               window.Left == left_.playerLeft && window.Top == left_.playerTop;
      },
      "remembered"));
  AddFoot(steps);
  AddHandsInTheLetter(steps);
  AddEqualizer(steps);
  AddMixer(steps);
  steps.push_back(Click("cmdSkip", "Skip leaves it", [this] { return Ready(); }));
  steps.push_back(Keys({keys::kAlt, keys::kF4}, "exit asks", [this] { return BoxOpen(); }));
  steps.push_back(Keys({keys::kReturn}, "yes ends the tour", [this] { return !BoxOpen(); }));
  return steps;
}

}  // namespace tavlo::tour
