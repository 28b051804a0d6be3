#pragma once

#include <string>

#include "remote/afar_action.h"
#include "support/deck_bench.h"

namespace tavlo::test {

/// The whole program with a key for each action, as F1 to F12 in the order of the page, and a
/// typist at another window who presses them.
struct RemoteBench : DeckBench {
  static std::string KeyFor(remote::AfarAction action) {
    return "F" + std::to_string(remote::IndexOf(action) + 1);
  }
  /// The stored settings of that, and no next document that comes by itself.
  static store::Assignments WithAllKeys() {
    return {{"PlayStopKey", "F1"},         {"PlayHeldKey", "F2"},    {"RewindHeldKey", "F3"},
            {"ForwardHeldKey", "F4"},      {"ToBeginningKey", "F5"}, {"ToEndKey", "F6"},
            {"SlowerKey", "F7"},           {"FasterKey", "F8"},      {"NormalSpeedKey", "F9"},
            {"CompleteKey", "F10"},        {"SaveKey", "F11"},       {"SkipKey", "F12"},
            {"AutoQueueDocumentFlag", "N"}};
  }

  /// Three documents wait, one is completed.
  RemoteBench() {
    for (const char* author : {"Adams", "Brown", "Clark"}) Drop(Document().By(author).Name());
    Keep(Document().By("Done").Name());
    PlaceSettings(WithAllKeys());
  }

  shell::Rooms& Rooms() { return *deck.Built(); }
  void Settle() { loop.Advance(base::Duration{0}); }
  /// The key goes down, and the program has heard of it. False where it is not the deck's.
  bool Down(remote::AfarAction action) {
    const bool told = keys.Down(action);
    Settle();
    return told;
  }
  bool Up(remote::AfarAction action) {
    const bool told = keys.Up(action);
    Settle();
    return told;
  }
  void Tap(remote::AfarAction action) {
    Down(action);
    Up(action);
  }
  /// Somebody on the bus asks, not too soon behind the last time, and the program has done what it
  /// does.
  void Ask(const remote::MediaCommand& command) {
    const remote::MediaPlayer& media = Rooms().mediaPlayer;
    if (media.tmrMediaCommands.Enabled()) loop.Advance(media.kBetweenCommands);
    bus.Ask(command);
    Settle();
  }
  void Ask(remote::MediaCommand::What what) { Ask({.what = what}); }

  /// The first document is in work and stands at this second.
  void WorkAt(double second) {
    ClickRow(0);
    form.cmdPlay.Press(forms::By::Hand);
    form.cmdStop.Press(forms::By::Hand);
    InWork().CurrentSamplePosition = second * 8000;
  }
  void WorkOn(double second = 4) {
    StartUntilReady();
    WorkAt(second);
  }
  double Second() { return InWork().CurrentSamplePosition / 8000; }
  bool Winds() { return Rooms().transport.WindDirection != playback::Wind::None; }
  bool Plays() { return Engine().IsPlaying; }
  bool Still() { return !Plays() && !Winds() && !player.IsRunning(); }
};

}  // namespace tavlo::test
