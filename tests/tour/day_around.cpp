// The day around the deck: what the typist wishes to be told of, and a letter in the word processor
// that goes on while the deck tells of work that has come.
#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QWidget>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

#include "day.h"
#include "desk.h"

namespace tavlo::tour {
namespace {

constexpr const char* kAlertTitle = "Tavlo Deck - New Priority Dictation Alert";
constexpr const char* kUrgent = "0021 0 Urgent 6 3 1 2004 8 0 0 6 0 8 today 0 P_.eW2";

/// Bytes: 48,000 samples of 16 bits on two sides.
constexpr qint64 kRecordedASecond = 48'000 * 2 * 2;

QString UrgentPath() { return InHome(QString("Lyrane/TavloDeck/Files/eW2Queue/") + kUrgent); }

}  // namespace

void Day::AddWishes(std::vector<Step>& steps) {
  forms::ConfigurationForm& config = program_.Deck().windows.configuration;
  steps.push_back(OpenSettings());
  steps.push_back(Click("chkWorkWaitingAlertMode", "the typist wants to hear of new work",
                        [&config] { return config.optNewWorkWaitingPriority.Enabled.Get(); }));
  steps.push_back(Click("optNewWorkWaitingPriority", "but only of what is urgent",
                        [&config] { return config.txtWorkWaitingAlertMode.Value.Get() == "P"; }));
  AddTyping(steps, "txtNewDictationAlertInterval", "2", config.txtNewDictationAlertInterval,
            "and soon");
  AddTyping(steps, "txtDeleteCompletedFiles", "14", config.txtDeleteCompletedFiles,
            "completed documents may go after two weeks");
  AddTyping(steps, "txtWordProcessorPath", "writer", config.txtWordProcessorPath,
            "and a word processor shows the reports", "wishes");
  steps.push_back(CloseSettings());
}

void Day::AddQuiet(std::vector<Step>& steps) {
  const forms::ConfigurationForm& config = program_.Deck().windows.configuration;
  steps.push_back(OpenSettings());
  steps.push_back(
      Click("chkWorkWaitingAlertMode", "the typist has heard enough of new work", [&config] {
        return config.txtWorkWaitingAlertMode.Value.Get() == "0" &&
               config.chkAutoRefreshMode.Enabled;
      }));
  steps.push_back(CloseSettings());
}

void Day::AddLetter(std::vector<Step>& steps) {
  steps.push_back({.says = "a word processor is started beside the deck",
                   .act = [this] { letter_.start("writer", QStringList()); },
                   .seen = [this] { return WindowOf(kLetter).id != XCB_NONE; }});
  steps.push_back(ClickWindow(kLetter, "and has the keyboard"));
  steps.push_back({.says = "a letter is begun in it",
                   .act = [this] { TypeOn("dear doctor brown\nyour letter of "); },
                   .seen = [this] { return LetterHasAll() && !Main().frmMain.HasKeyboard; },
                   .picture = "letter"});
}

void Day::AddAlert(std::vector<Step>& steps) {
  const auto always = [] { return true; };
  steps.push_back(
      {.says = "the preview is over, and it is silent", .seen = [this] { return IsSilent(); }});
  steps.push_back(
      {.says = "another program drops an urgent dictation",
       .act =
           [this] {
             recordedBefore_ = QFileInfo(recording_).size();
             recorder_.start(
                 "cp", {InHome("Lyrane/TavloDeck/Files/InQueue/Memo from Anna.wav"), UrgentPath()});
           },
       .seen =
           [this] {
             return recorder_.state() == QProcess::NotRunning && QFile::exists(UrgentPath());
           }});
  steps.push_back({.says = "the deck comes to the top by itself, while the letter is typed on",
                   .act = [this] { TypeAWord(); },
                   .seen =
                       [this] {
                         const QWidget* const deck = typist_.Widget("frmMain");
                         return Main().frmMain.TopMost && deck &&
                                typist_.HasState(*deck, "_NET_WM_STATE_ABOVE");
                       },
                   .over = always,
                   .picture = "alert-comes"});
  steps.push_back({.says = "the desktop shows a notification",
                   .act = [this] { TypeAWord(); },
                   .seen =
                       [] {
                         return Notification() ==
                                QByteArray(kAlertTitle) + "\nNew priority dictation has arrived!\n";
                       },
                   .over = always});
  steps.push_back({.says = "the deck says it aloud",
                   .act = [this] { TypeAWord(); },
                   .seen = [this] { return HeardSpeech(); },
                   .over = always});
  steps.push_back(
      {.says = "and shows a message, which takes no letter from whoever types",
       .act = [this] { TypeAWord(); },
       .seen = [this] { return screen_.Box(kAlertTitle).id != XCB_NONE && LetterHasAll(); },
       .over = always,
       .picture = "alert"});
  steps.push_back({.says = "nor any key that would answer it",
                   .act =
                       [this] {
                         TypeOn("\n ");
                         typist_.KeysUnseen({keys::kEscape});
                         TypeOn("we thank you for it");
                       },
                   .seen = [this] { return LetterHasAll() && BoxOpen() && HasKeyboard(kLetter); }});
}

void Day::AddAnswer(std::vector<Step>& steps) {
  steps.push_back(Answer(
      "OK", "a click answers it, and the urgent dictation stands on top of the Queue",
      [this] {
        return Ready() && RowOf("Urgent") == 0 && !Main().frmMain.TopMost &&
               Notification().isEmpty() && !QFile::exists(UrgentPath());
      },
      "alert-answered"));
  steps.push_back({.says = "the letter has the keyboard again",
                   .seen = [this] { return HasKeyboard(kLetter); }});
  steps.push_back({.says = "and is typed to its end: not one key was lost",
                   .act = [this] { TypeOn("\n\nyours"); },
                   .seen = [this] { return LetterHasAll(); },
                   .picture = "letter-ends"});
  steps.push_back(Keys({keys::kAlt, keys::kF4}, "the word processor is closed", [this] {
    return letter_.state() == QProcess::NotRunning && WindowOf(kLetter).id == XCB_NONE;
  }));
  steps.push_back(CallDeck());
}

Step Day::OpenSettings() {
  return {.says = "the settings open",
          .act =
              [this] {
                typist_.KeysUnseen({keys::kAlt, 'f'});
                typist_.KeysUnseen({'c'});
              },
          .seen =
              [this] {
                const forms::ConfigurationForm& config = program_.Deck().windows.configuration;
                return ConfigurationShows() && config.frameSettings.Visible;
              }};
}

Step Day::CloseSettings() {
  return Keys({keys::kAlt, 'c'}, "closing keeps the settings",
              [this] { return !ConfigurationShows() && Ready() && Main().frmMain.HasKeyboard; });
}

bool Day::ConfigurationShows() {
  return program_.Deck().windows.configuration.frmConfiguration.Visible.Get();
}

void Day::AddTyping(std::vector<Step>& steps, const char* box, const std::string& text,
                    const forms::Text& shown, std::string says, std::string picture) {
  // A window manager may hand on a click later than the keys behind it.
  steps.push_back(Click(box, std::move(says), [this, box] {
    const QWidget* const edit = typist_.Widget(box);
    return edit && edit->hasFocus();
  }));
  steps.push_back({.says = "its box takes \"" + text + "\"",
                   .act =
                       [this, text] {
                         typist_.KeysUnseen({keys::kControl, 'a'});
                         for (const char letter : text) {
                           if (letter == ':') {
                             typist_.KeysUnseen({keys::kShift, ';'});
                           } else {
                             typist_.KeysUnseen({static_cast<unsigned>(letter)});
                           }
                         }
                       },
                   .seen = [&shown, text] { return shown.Value.Get() == text; },
                   .picture = std::move(picture)});
}

Step Day::Answer(const char* button, std::string says, std::function<bool()> seen,
                 std::string picture) {
  return {.says = std::move(says),
          .act =
              [this, button] {
                const QWidget* const box = typist_.Widget("messageBox");
                if (!box) return;
                const test::SeenWindow window = WindowOf(box->windowTitle().toStdString());
                for (const auto* const key : box->findChildren<QAbstractButton*>()) {
                  if (key->text().remove('&') != button) continue;
                  typist_.ClickUnseen(QPoint(window.x, window.y) +
                                      key->mapTo(box, key->rect().center()));
                }
              },
          .seen = [this, seen = std::move(seen)] { return !BoxOpen() && seen(); },
          // A box that is just being shown may still move.
          .over = [this] { return BoxOpen(); },
          .picture = std::move(picture)};
}

Step Day::ClickWindow(const std::string& title, std::string says, std::string picture) {
  return {.says = std::move(says),
          .act =
              [this, title] {
                constexpr int kFromCorner = 60;
                const test::SeenWindow window = WindowOf(title);
                typist_.ClickUnseen({window.x + window.width - kFromCorner,
                                     window.y + window.height - kFromCorner});
              },
          .seen = [this, title] { return HasKeyboard(title); },
          .over = [] { return true; },
          .picture = std::move(picture)};
}

Step Day::CallDeck() {
  return {.says = "and the deck has the keyboard",
          .act =
              [this] {
                if (const QWidget* const deck = typist_.Widget("frmMain")) typist_.Summon(*deck);
              },
          .seen = [this] { return Main().frmMain.HasKeyboard && Ready(); }};
}

void Day::TypeAWord() {
  constexpr std::array kWords{"monday ", "came ",  "this ", "morning ", "with ",  "all ",
                              "the ",    "notes ", "of ",   "your ",    "last ",  "visit ",
                              "and ",    "of ",    "the ",  "one ",     "before "};
  TypeOn(kWords.at(words_++ % kWords.size()));
}

void Day::TypeOn(const std::string& words) {
  for (const char letter : words) {
    typist_.KeysUnseen({letter == '\n' ? keys::kReturn : static_cast<unsigned>(letter)});
  }
  typed_ += words;
}

test::SeenWindow Day::WindowOf(const std::string& title) {
  const std::vector<test::SeenWindow> windows = screen_.Windows();
  const auto found = std::ranges::find(windows, title, &test::SeenWindow::title);
  return found == windows.end() ? test::SeenWindow() : *found;
}

bool Day::HasKeyboard(const std::string& title) {
  const auto active = screen_.Numbers(screen_.hands.Root(), "_NET_ACTIVE_WINDOW");
  return !active.empty() && screen_.Look(active.front()).title == title;
}

bool Day::LetterHasAll() { return Letter().toStdString() == typed_; }

std::ptrdiff_t Day::LoudSamples(qint64 since) {
  constexpr int kLoud = 1000;  // Far above any noise.
  QFile file(recording_);
  if (!file.open(QFile::ReadOnly) || !file.seek(std::max<qint64>(since, 0) / 4 * 4)) return 0;
  const QByteArray bytes = file.readAll();
  std::vector<std::int16_t> samples(static_cast<std::size_t>(bytes.size()) / 2);
  std::copy_n(bytes.data(), samples.size() * 2, reinterpret_cast<char*>(samples.data()));
  return std::ranges::count_if(samples, [](int sample) { return std::abs(sample) > kLoud; });
}

bool Day::IsSilent() {
  const qint64 now = QFileInfo(recording_).size();
  return !Playing() && LoudSamples(now - kRecordedASecond) == 0;
}

bool Day::HeardSpeech() { return LoudSamples(recordedBefore_) > kRecordedASecond / 20; }

}  // namespace tavlo::tour
