#pragma once

#include <QPoint>
#include <atomic>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>

#include "platform/desktop/program.h"
#include "support/display_mark.h"
#include "support/hands.h"
#include "support/home.h"

class QMessageBox;
class QWidget;

namespace tavlo::test {

/// The real program in this process, and somebody beside it who uses it by keyboard and mouse and
/// may also look inside. The program has this thread. The script runs on one of its own, so it
/// goes on under message boxes and inside waits as a person would; what it wants to know it asks
/// on the program's thread, between two of the program's events.
class DrivenProgram {
 public:
  /// Starts nothing yet. The home must outlive the program. A trust store takes the place of the
  /// system's.
  explicit DrivenProgram(const Home& home, const platform::TrustStore& trust = {});

  /// Runs the program and the script to the end of both; returns the program's exit status. A
  /// program that does not end by what the script did fails the test and is ended. One whose loop
  /// does not answer aborts it.
  int Run(const std::function<void()>& script);

  shell::Windows& Windows() { return program_.Deck().windows; }
  forms::MainForm& Main() { return Windows().main; }
  shell::Rooms& Rooms() { return *program_.Deck().Built(); }
  platform::qt::QtLoop& Loop() { return program_.Loop(); }

  // For the script.

  /// Runs a call on the program's thread and waits for it.
  void Do(const std::function<void()>& call);
  template <typename Look>
  auto Ask(Look look) {
    decltype(look()) answer{};
    Do([&] { answer = look(); });
    return answer;
  }
  /// Asks again and again; false when the answer was never yes.
  bool Until(const std::function<bool()>& condition);
  /// Returns when what the hands did has reached the program, and what the program made of its
  /// windows then stands on the screen.
  void Settle();
  /// The list stands, and nothing is under way.
  bool IsReady();
  /// The open message box, of several the foremost; null when there is none. For the program's
  /// thread.
  static QMessageBox* OpenBox();
  /// Title and text of the open message box with a colon between them; empty when none is open.
  std::string Box();
  int RowOf(const std::string& fileName);

  // The hands. Each of these returns when the program has what they did, and has ended it or is at
  // it.

  /// Clicks the splash away and waits for the list.
  bool Begin();
  void Click(const char* control);
  void DoubleClick(const char* control);
  /// Of the Queue.
  void ClickRow(int row);
  void ClickCell(const char* list, int row, int column);
  void Keys(std::initializer_list<std::uint32_t> symbols);
  /// Drags a slider's handle to so many hundredths of its width.
  void Drag(const char* slider, int percent);
  /// Waits for a box, which Return then closes; returns what `Box` said.
  std::string AnswerBox();
  /// Leaves by the close button and agrees.
  void Exit();

 private:
  /// A point of a widget; without one when there is none to be seen.
  struct Spot {
    QWidget* widget = nullptr;
    QPoint inside;
  };
  static QWidget* Widget(const char* name);
  /// Where the screen really has a spot, in pixels.
  QPoint PlaceOf(const Spot& spot) const;
  /// The middle of a control once it stands still, in pixels.
  QPoint MiddleOf(const char* control);
  /// Settles, unless what the hands did was to end the program.
  void Follow();
  /// Where a spot is on the screen once it stands still, in pixels.
  QPoint Rest(const std::function<Spot()>& spot);

  int argumentCount_ = 1;
  char name_[10] = "tavlodeck";
  char* arguments_[2] = {name_, nullptr};
  platform::desktop::Program program_;
  Hands hands_;
  DisplayMark mark_;
  std::atomic<bool> over_ = false;
};

}  // namespace tavlo::test
