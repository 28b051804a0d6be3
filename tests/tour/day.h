#pragma once

#include <QFile>
#include <QProcess>
#include <QString>
#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "office.h"
#include "pedals/pedal_pipe.h"
#include "platform/desktop/program.h"
#include "remote/afar_action.h"
#include "support/keys.h"
#include "support/screen.h"
#include "support/typist.h"
#include "tour.h"

namespace tavlo::tour {

namespace keys = test::keys;

/// Title of the word processor's window while a letter is written in it.
inline constexpr const char* kLetter = "Letter - Writer";

/// What the typist left behind at the end of a day and finds the next morning. Plain, for it stands
/// in memory that the days' processes share.
struct Left {
  std::size_t stepsSoFar = 0;
  int speed = 0;
  std::int64_t volume = 0;
  forms::Twips playerLeft = 0;
  forms::Twips playerTop = 0;
  /// What Day::Settings gave, and a NUL.
  std::array<char, 32'768> settings = {};
};

/// What the typist does in a day, as steps on the real program.
class Day {
 public:
  /// `left` is filled by the first day and looked at on the next one. On the first there is no foot
  /// pedal. `recording` is the path of the wave that grows while the desk's sound card plays.
  Day(platform::desktop::Program& program, Left& left, const test::PedalPipe* foot,
      QString recording);

  std::vector<Step> Steps();
  /// The next morning: what the program remembers.
  std::vector<Step> NextMorning();

 private:
  /// Key symbols of the display.
  using Symbols = std::vector<std::uint32_t>;

  void AddStart(std::vector<Step>& steps);
  void AddArrivals(std::vector<Step>& steps);
  void AddWriter(std::vector<Step>& steps);
  void AddRescue(std::vector<Step>& steps);
  void AddImport(std::vector<Step>& steps);
  void AddProfile(std::vector<Step>& steps);
  void AddSending(std::vector<Step>& steps);
  void AddListening(std::vector<Step>& steps);
  void AddShaping(std::vector<Step>& steps);
  void AddFinishing(std::vector<Step>& steps);
  /// The author's first document is played to its end and completed.
  void AddCompleting(std::vector<Step>& steps, const std::string& author);
  void AddList(std::vector<Step>& steps);
  void AddOddDocuments(std::vector<Step>& steps);
  void AddCompleted(std::vector<Step>& steps);
  void AddWishes(std::vector<Step>& steps);
  /// A word of letters, digits and colons takes the place of what a text box holds.
  void AddTyping(std::vector<Step>& steps, const char* box, const std::string& text,
                 const forms::Text& shown, std::string says, std::string picture = {});
  void AddLetter(std::vector<Step>& steps);
  void AddAlert(std::vector<Step>& steps);
  void AddAnswer(std::vector<Step>& steps);
  void AddReports(std::vector<Step>& steps);
  void AddReport(std::vector<Step>& steps, const char* kind, const forms::Table& list);
  void AddDeleting(std::vector<Step>& steps);
  void AddFaces(std::vector<Step>& steps);
  void AddQuiet(std::vector<Step>& steps);
  void AddPaths(std::vector<Step>& steps);
  void AddOwnWays(std::vector<Step>& steps);
  void AddServer(std::vector<Step>& steps);
  void AddRefusal(std::vector<Step>& steps);
  void AddListing(std::vector<Step>& steps);
  void AddMoving(std::vector<Step>& steps);
  void AddDownload(std::vector<Step>& steps);
  void AddArrived(std::vector<Step>& steps);
  void AddRetrieval(std::vector<Step>& steps);
  void AddLostServer(std::vector<Step>& steps);
  /// Opens the configuration and goes to the page of that letter.
  void AddPage(std::vector<Step>& steps, std::uint32_t letter, const forms::Pane& page,
               std::string says, std::string picture = {});
  /// Logs in with the server that is chosen, and lists what it has.
  void AddConnecting(std::vector<Step>& steps);
  /// Picks a row of a box, so many below the one that it shows.
  void AddPicking(std::vector<Step>& steps, const char* box, int rowsDown, std::string says,
                  std::function<bool()> seen, std::string picture = {});
  void AddWindows(std::vector<Step>& steps);
  void AddEnd(std::vector<Step>& steps);
  void AddFoot(std::vector<Step>& steps);
  void AddChoosingKeys(std::vector<Step>& steps);
  /// A click on the box of an action, and a press of keys, modifiers first, which it takes.
  void AddKey(std::vector<Step>& steps, remote::AfarAction action, Symbols symbols,
              const std::string& trigger, std::string says);
  void AddPressing(std::vector<Step>& steps, remote::AfarAction action, Symbols symbols,
                   std::string says, std::function<bool()> seen, std::string picture = {});
  void AddHandsInTheLetter(std::vector<Step>& steps);
  void AddEqualizer(std::vector<Step>& steps);
  void AddMixer(std::vector<Step>& steps);

  Step Click(const char* control, std::string says, std::function<bool()> seen,
             std::string picture = {});
  Step ClickRowOf(const std::string& author, std::string says, std::function<bool()> seen,
                  std::string picture = {});
  Step Keys(std::initializer_list<std::uint32_t> symbols, std::string says,
            std::function<bool()> seen, std::string picture = {});
  /// Clicks the button of that caption in the message box that shows.
  Step Answer(const char* button, std::string says, std::function<bool()> seen,
              std::string picture = {});
  /// Turns to a window of another program.
  Step ClickWindow(const std::string& title, std::string says, std::string picture = {});
  /// Turns to the deck, as by a task bar.
  Step CallDeck();
  /// Enters a view by the letter of its entry in the menu.
  Step TurnTo(std::uint32_t letter, std::string says, std::function<bool()> seen,
              std::string picture = {});
  /// Clicks the file at that row of one of the lists of the Ftp view.
  Step ClickFile(const char* list, int row, std::string says, std::function<bool()> seen,
                 std::string picture = {});
  /// Opens the settings, and leaves the configuration again.
  Step OpenSettings();
  Step CloseSettings();
  /// Drags a slider's handle to so many hundredths of its width.
  Step Drag(const char* slider, int percent, std::string says, std::function<bool()> seen);

  /// What a pedal's report says is down.
  Step Foot(std::uint8_t bits, std::string says, std::function<bool()> seen);
  /// Presses keys together, modifiers first, and lets them go.
  void PressTogether(const Symbols& symbols);
  /// Draws an upright slider's handle from its middle to so many hundredths of its height.
  void DrawTo(const char* slider, int percent);

  forms::MainForm& Main() { return program_.Deck().windows.main; }
  shell::Rooms* Rooms() { return program_.Deck().Built(); }
  /// A click on the author's name in a row of the list.
  void ClickAuthor(const char* list, int row);
  void ClickImportRow(int row);
  void ClickFolder(const std::string& name);
  /// The status box of the Ftp view says that, among other things.
  bool FtpSays(const char* words);
  static int RowIn(const forms::Table& list, const std::string& author);
  int RowOf(const std::string& author) { return RowIn(Main().listViewInQueue, author); }
  std::string Cell(const std::string& author, int column);
  /// A line for each setting that has a control: its field, and what the control shows.
  std::string Settings();
  bool Ready();
  bool BoxOpen() { return program_.Loop().MessageBoxOpen(); }
  bool Playing();
  bool CompletedShows();
  bool ConfigurationShows();
  /// Small letters, blanks, and an end of line, for whichever window has the keyboard.
  void TypeOn(const std::string& words);
  /// The next one of the letter.
  void TypeAWord();
  bool HasKeyboard(const std::string& title);
  test::SeenWindow WindowOf(const std::string& title);
  /// The letter says all that was typed into it, and no more.
  bool LetterHasAll();
  /// How many samples of the recording are loud from that byte on.
  std::ptrdiff_t LoudSamples(qint64 since);
  /// Nothing has sounded for a second.
  bool IsSilent();
  /// Something has sounded since a moment that was marked.
  bool HeardSpeech();
  double Seconds();
  /// Outer height of the window while only the player shows, in twips.
  int PlayerHeight() {
    return static_cast<int>(Main().txtTitleBarHeight.WholeNumber()) + Main().framePlayer.Height;
  }

  platform::desktop::Program& program_;
  Left& left_;
  const test::PedalPipe* foot_;
  test::Typist typist_;
  test::Screen screen_;
  const QString recording_;
  qint64 recordedBefore_ = 0;
  QProcess secondCopy_;
  QProcess letter_;
  QProcess recorder_;
  std::string typed_;  ///< Into the letter.
  std::size_t words_ = 0;
  /// A dictation that somebody is just writing.
  QFile writer_;
  Office office_;
  double remembered_ = 0;
  int rows_ = 0;
  int files_ = 0;
};

}  // namespace tavlo::tour
