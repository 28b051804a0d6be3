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

#include "pedals/pedal_pipe.h"
#include "platform/desktop/program.h"
#include "support/keys.h"
#include "support/typist.h"
#include "tour.h"

namespace tavlo::tour {

namespace keys = test::keys;

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
  /// pedal.
  Day(platform::desktop::Program& program, Left& left, const test::PedalPipe* foot);

  std::vector<Step> Steps();
  /// The next morning: what the program remembers.
  std::vector<Step> NextMorning();

 private:
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
  void AddList(std::vector<Step>& steps);
  void AddOddDocuments(std::vector<Step>& steps);
  void AddCompleted(std::vector<Step>& steps);
  void AddOtherViews(std::vector<Step>& steps);
  void AddWindows(std::vector<Step>& steps);
  void AddEnd(std::vector<Step>& steps);
  void AddFoot(std::vector<Step>& steps);
  void AddEqualizer(std::vector<Step>& steps);
  void AddMixer(std::vector<Step>& steps);

  Step Click(const char* control, std::string says, std::function<bool()> seen,
             std::string picture = {});
  Step ClickRowOf(const std::string& author, std::string says, std::function<bool()> seen,
                  std::string picture = {});
  Step Keys(std::initializer_list<std::uint32_t> symbols, std::string says,
            std::function<bool()> seen, std::string picture = {});
  /// Drags a slider's handle to so many hundredths of its width.
  Step Drag(const char* slider, int percent, std::string says, std::function<bool()> seen);

  /// What a pedal's report says is down.
  Step Foot(std::uint8_t bits, std::string says, std::function<bool()> seen);
  /// Draws an upright slider's handle from its middle to so many hundredths of its height.
  void DrawTo(const char* slider, int percent);

  forms::MainForm& Main() { return program_.Deck().windows.main; }
  shell::Rooms* Rooms() { return program_.Deck().Built(); }
  /// A click on the author's name in a row of the list.
  void ClickAuthor(const char* list, int row);
  void ClickImportRow(int row);
  int RowOf(const std::string& author);
  std::string Cell(const std::string& author, int column);
  /// A line for each setting that has a control: its field, and what the control shows.
  std::string Settings();
  bool Ready();
  bool BoxOpen() { return program_.Loop().MessageBoxOpen(); }
  bool Playing();
  double Seconds();
  /// Outer height of the window while only the player shows, in twips.
  int PlayerHeight() {
    return static_cast<int>(Main().txtTitleBarHeight.WholeNumber()) + Main().framePlayer.Height;
  }

  platform::desktop::Program& program_;
  Left& left_;
  const test::PedalPipe* foot_;
  test::Typist typist_;
  QProcess secondCopy_;
  /// A dictation that somebody is just writing.
  QFile writer_;
  double remembered_ = 0;
  int rows_ = 0;
};

}  // namespace tavlo::tour
