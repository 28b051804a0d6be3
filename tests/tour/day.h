#pragma once

#include <QProcess>
#include <QString>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "platform/desktop/program.h"
#include "support/typist.h"
#include "tour.h"

namespace tavlo::tour {

/// What the typist does in a day, as steps on the real program.
class Day {
 public:
  explicit Day(platform::desktop::Program& program);

  std::vector<Step> Steps();

 private:
  void AddStart(std::vector<Step>& steps);
  void AddListening(std::vector<Step>& steps);
  void AddShaping(std::vector<Step>& steps);
  void AddFinishing(std::vector<Step>& steps);
  void AddList(std::vector<Step>& steps);
  void AddCompleted(std::vector<Step>& steps);
  void AddWindows(std::vector<Step>& steps);
  void AddEnd(std::vector<Step>& steps);

  Step Click(const char* control, std::string says, std::function<bool()> seen,
             std::string picture = {});
  Step ClickRowOf(const std::string& author, std::string says, std::function<bool()> seen,
                  std::string picture = {});
  Step Keys(std::initializer_list<std::uint32_t> symbols, std::string says,
            std::function<bool()> seen, std::string picture = {});
  /// Drags a slider's handle to so many hundredths of its width.
  Step Drag(const char* slider, int percent, std::string says, std::function<bool()> seen);

  forms::MainForm& Main() { return program_.Deck().windows.main; }
  shell::Rooms* Rooms() { return program_.Deck().Built(); }
  /// A click on the author's name in a row of the list.
  void ClickAuthor(const char* list, int row);
  int RowOf(const std::string& author);
  std::string Cell(const std::string& author, int column);
  bool Ready();
  bool Playing();
  double Seconds();

  platform::desktop::Program& program_;
  test::Typist typist_;
  QProcess secondCopy_;
  double remembered_ = 0;
  int rows_ = 0;
};

}  // namespace tavlo::tour
