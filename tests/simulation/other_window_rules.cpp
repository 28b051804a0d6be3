// What the keys of all windows and the bus hold and tell, against what stands on the forms.
#include <algorithm>
#include <cmath>
#include <vector>

#include "remote/key_trigger.h"
#include "simulation/other_window.h"

namespace tavlo::simulation {
namespace {

using remote::KeyTrigger;
using remote::KeyWish;
using remote::MediaState;
using remote::PlaybackStatus;

/// What must be wished for by what stands on the page.
std::vector<KeyWish> ChosenKeys(Desk& desk) {
  std::vector<KeyWish> chosen;
  for (const remote::AfarActionName& name : remote::kAfarActions) {
    const auto trigger =
        KeyTrigger::Of(desk.Config().keys[remote::IndexOf(name.action)].txtKey.Value.Get());
    if (!trigger || !WhyNeededForWriting(*trigger).empty()) continue;
    const bool isTaken =
        std::ranges::find(chosen, trigger->Text(), &KeyWish::trigger) != chosen.end();
    if (!isTaken) chosen.push_back({.action = name.action, .trigger = trigger->Text()});
  }
  return chosen;
}

std::string BrokenKeys(Desk& desk) {
  if (desk.keys.Wishes() != ChosenKeys(desk)) return "Other keys are wished for than are chosen.";
  for (const remote::AfarActionName& name : remote::kAfarActions) {
    const bool lit = desk.Config().keys[remote::IndexOf(name.action)].Down;
    if (lit != desk.keys.IsDown(name.action)) {
      return "The light of " + std::string(name.id) + (lit ? " is on." : " is off.");
    }
  }
  return "";
}

/// Nothing of the document but what the strip shows, and no way to its file.
std::string BrokenPrivacy(Desk& desk, const MediaState& told) {
  const std::string name = desk.Rooms()->documentInWork.FileName();
  for (const std::string& text : {told.title, told.artist}) {
    if (text.find(test::kRoot) != text.npos) return "The bus tells a path: " + Readable(text);
    // A name of one field may be that of an author.
    const bool isName = name.size() > 8 && text.find(name) != text.npos;
    if (isName) return "The bus tells a file's name: " + Readable(text);
  }
  if (desk.Config().txtBusSaysNothing.Value.Get() != "Y") return "";
  const bool tells = !told.title.empty() || !told.artist.empty() || told.length != 0 ||
                     told.track != 0 || desk.bus.Position() != 0 || told.canSeek;
  return tells ? "The bus tells of a document that is kept private." : "";
}

std::string BrokenTelling(Desk& desk, const MediaState& told) {
  const forms::MainForm& main = desk.Main();
  const bool inWork = main.cmdSkip.Enabled;
  const PlaybackStatus status = !inWork                          ? PlaybackStatus::Stopped
                                : desk.Rooms()->engine.IsPlaying ? PlaybackStatus::Playing
                                                                 : PlaybackStatus::Paused;
  if (told.status != status) return "The bus tells another state.";
  if (told.canPlay != main.cmdPlay.Reachable()) return "The bus tells another key of Play.";
  if (!inWork && desk.bus.Position() != 0) return "The bus tells a place in no document.";
  if (std::isnan(told.rate) || told.rate < remote::kSlowestRate ||
      told.rate > remote::kFastestRate) {
    return "The bus tells a speed that there is not.";
  }
  const std::string& author = main.StatusBar1.Panels.Get()[2];
  const bool tellsOfAnother = told.track != 0 && told.artist != author;
  if (tellsOfAnother) return "The bus tells of another document than the strip.";
  const bool isBehind = told.length > 0 && desk.bus.Position() > told.length;
  return isBehind ? "The bus tells a place behind the end." : "";
}

}  // namespace

std::string BrokenAfar(Desk& desk) {
  if (!desk.bus.Offered()) return "The player is not offered on the bus.";
  const MediaState told = desk.bus.Look();
  std::string wrong = BrokenKeys(desk);
  if (wrong.empty()) wrong = BrokenPrivacy(desk, told);
  return wrong.empty() ? BrokenTelling(desk, told) : wrong;
}

}  // namespace tavlo::simulation
