#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "ftp/server_list.h"
#include "remote/afar_action.h"
#include "settings/walk.h"
#include "store/work_folders.h"

/// How settings are changed by hand, and what is seen of them after a restart.
namespace tavlo::test {

Act Slid(forms::Range forms::ConfigurationForm::*range, int right);
Act Ticked(forms::Choice forms::ConfigurationForm::*box, bool on);
Act Pressed(forms::Command forms::ConfigurationForm::*key);
Act Filled(forms::Text forms::ConfigurationForm::*box, const std::string& text);
Act FilledProfile(forms::Text forms::MainForm::*box, const std::string& text);
Act FilledWithFolder(forms::Text forms::ConfigurationForm::*box, const std::string& folder);
/// Presses a key with its modifier into the box of an action.
Act KeyChosen(remote::AfarAction action, std::uint32_t modifier, std::uint32_t key);
/// Each band has another gain, and none its first one.
Act Drawn(std::size_t band);
void SaveAndChooseCustom(Walk& walk);
void PickSecondDevice(Walk& walk);
void PickNextAuthor(Walk& walk);
void PickSecondServer(Walk& walk);
/// The profile of the server that is chosen.
void NameSecondServer(Walk& walk);
void ClickFace(Walk& walk);
void SlideVolume(Walk& walk);
void SlideSpeedWhilePlaying(Walk& walk);
void Unlink(Walk& walk);
void GivePriority(Walk& walk);

/// The rules hold this number.
Act Holds(store::Table table, const char* field, std::function<std::int64_t(Walk&)> look);
Act LogsInWith(const char* field, std::function<std::string(const ftp::ServerProfile&)> look);
/// A field of the document's name that the note was given which waited in an import directory.
Act SentAs(const char* field, std::size_t place);
Act SweptFrom(std::string store::WorkFolders::*path, const char* folder);
void ExpectNoteSent(Walk& walk);
void ExpectFaceOfItsNumber(Walk& walk);
void ExpectHeading(Walk& walk);
void ExpectOwnLine(Walk& walk);
void ExpectAbove(Walk& walk);
void ExpectPreviewOfItsSeconds(Walk& walk);
/// Twenty ticks make one check.
Act TicksFor(int seconds);
void ExpectOldDocumentGone(Walk& walk);
/// The sliders are what sounds.
Act ExpectBand(std::size_t band);
void ExpectPedalOfItsPort(Walk& walk);
/// In a person's words, in its box.
Act ExpectKey(remote::AfarAction action, const std::string& words);
/// A document that is chosen shows on the bus only as one that could be played.
void ExpectSilenceOnTheBus(Walk& walk);
/// Nobody presses a key.
void ExpectRefreshesByItself(Walk& walk);

}  // namespace tavlo::test
