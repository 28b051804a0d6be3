// The hands stay in the letter: keys of any window, a pedal that is a keyboard to the desktop, and
// a media key run the deck while somebody types.
#include <QDBusConnection>
#include <QDBusMessage>
#include <cstdint>
#include <string>

#include "day.h"
#include "remote/afar_action.h"

namespace tavlo::tour {
namespace {

using remote::AfarAction;

// What the pedal sends, and what the typist has free.
constexpr std::uint32_t kCenterOfThePedal = 0xFFC6;  // F9
constexpr std::uint32_t kLeftOfThePedal = 0xFFC5;    // F8
constexpr std::uint32_t kF7 = 0xFFC4;

/// What a desktop does when its media key is pressed.
void PressMediaKey() {
  QDBusConnection::sessionBus().send(
      QDBusMessage::createMethodCall("org.mpris.MediaPlayer2.tavlodeck", "/org/mpris/MediaPlayer2",
                                     "org.mpris.MediaPlayer2.Player", "PlayPause"));
}

}  // namespace

void Day::AddChoosingKeys(std::vector<Step>& steps) {
  forms::ConfigurationForm& config = program_.Deck().windows.configuration;
  AddPage(steps, 'k', config.frameConfigKeys, "the keys of other windows have a page");
  AddKey(steps, AfarAction::PlayHeld, {kCenterOfThePedal}, "F9", "a pedal that sends F9 plays");
  AddKey(steps, AfarAction::RewindHeld, {kLeftOfThePedal}, "F8", "its left part rewinds");
  AddKey(steps, AfarAction::Faster, {keys::kControl, kF7}, "CTRL+F7", "a key makes it faster");
  const auto refuses = [&config] {
    const forms::KeyRow& row = config.keys[remote::IndexOf(AfarAction::Complete)];
    return row.txtKey.Value.Get().empty() && !row.lblKeyState.Value.Get().empty();
  };
  AddPressing(steps, AfarAction::Complete, {'c'}, "a letter is needed for writing, and is refused",
              refuses, "keys");
  // Alt and a letter would be another key for the box.
  steps.push_back(Keys({keys::kEscape}, "closing keeps the keys",
                       [this] { return !ConfigurationShows() && Ready(); }));
}

void Day::AddKey(std::vector<Step>& steps, AfarAction action, Symbols symbols,
                 const std::string& trigger, std::string says) {
  const forms::KeyRow& row = program_.Deck().windows.configuration.keys[remote::IndexOf(action)];
  AddPressing(steps, action, symbols, std::move(says),
              [&row, trigger] { return row.txtKey.Value.Get() == trigger; });
}

void Day::AddPressing(std::vector<Step>& steps, AfarAction action, Symbols symbols,
                      std::string says, std::function<bool()> seen, std::string picture) {
  const forms::Text& box =
      program_.Deck().windows.configuration.keys[remote::IndexOf(action)].txtKey;
  steps.push_back(Click(box.Name.c_str(), std::move(says), [this, &box] {
    const QWidget* const edit = typist_.Widget(QString::fromStdString(box.Name));
    return edit && edit->hasFocus();
  }));
  steps.push_back({.says = "and its box takes the press",
                   .act = [this, symbols] { PressTogether(symbols); },
                   .seen = std::move(seen),
                   .picture = std::move(picture)});
}

void Day::PressTogether(const Symbols& symbols) {
  for (const std::uint32_t symbol : symbols) screen_.hands.Hold(symbol);
  for (auto symbol = symbols.rbegin(); symbol != symbols.rend(); ++symbol) {
    screen_.hands.LetGo(*symbol);
  }
}

void Day::AddHandsInTheLetter(std::vector<Step>& steps) {
  const auto atRest = [this] { return !Playing() && !Main().DeckRuns; };
  const auto always = [] { return true; };
  steps.push_back({.says = "a letter is begun beside the dictation",
                   .act = [this] { letter_.start("writer", QStringList()); },
                   .seen = [this] { return WindowOf(kLetter).id != XCB_NONE; }});
  steps.push_back(ClickWindow(kLetter, "and has the keyboard"));
  steps.push_back(
      {.says = "while the pedal's key is held the document sounds, and the letter is "
               "typed on",
       .act =
           [this] {
             remembered_ = Seconds();
             screen_.hands.Hold(kCenterOfThePedal);
             TypeAWord();
             TypeAWord();
           },
       .seen = [this] { return Playing() && Seconds() > remembered_ + 1 && LetterHasAll(); },
       .picture = "typed-under-the-key"});
  steps.push_back({.says = "its release stops it",
                   .act = [this] { screen_.hands.LetGo(kCenterOfThePedal); },
                   .seen = atRest});
  steps.push_back({.says = "the other part winds back",
                   .act =
                       [this] {
                         remembered_ = Seconds();
                         screen_.hands.Hold(kLeftOfThePedal);
                         TypeAWord();
                       },
                   .seen = [this] { return !Playing() && Seconds() < remembered_ - 1; }});
  steps.push_back({.says = "until it is let go",
                   .act = [this] { screen_.hands.LetGo(kLeftOfThePedal); },
                   .seen = atRest});
  steps.push_back(
      {.says = "the media key plays", .act = PressMediaKey, .seen = [this] { return Playing(); }});
  steps.push_back({.says = "a key makes it faster, letter by letter",
                   .act =
                       [this] {
                         rows_ = Main().Slider1.Value;
                         PressTogether({keys::kControl, kF7});
                         TypeAWord();
                       },
                   .seen = [this] { return Main().Slider1.Value == rows_ + 5 && Playing(); }});
  steps.push_back({.says = "and the media key stops it", .act = PressMediaKey, .seen = atRest});
  steps.push_back({.says = "the letter kept the keyboard, and not one letter was lost",
                   .act = [this] { TypeAWord(); },
                   .seen = [this] { return LetterHasAll() && HasKeyboard(kLetter); },
                   .over = always,
                   .picture = "hands-in-the-letter"});
  steps.push_back(Keys({keys::kAlt, keys::kF4}, "the word processor is closed", [this] {
    return letter_.state() == QProcess::NotRunning && WindowOf(kLetter).id == XCB_NONE;
  }));
}

}  // namespace tavlo::tour
