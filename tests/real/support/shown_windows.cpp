#include "support/shown_windows.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QEvent>
#include <QTableView>
#include <string>
#include <vector>

#include "support/patience.h"

namespace tavlo::test {
namespace {

using forms::Row;

constexpr forms::Colour kRed = 0xFF0000;
constexpr forms::Colour kBlue = 0x0000FF;

Row DocumentRow(const std::vector<std::string>& texts) {
  const bool priority = !texts[0].empty();
  Row row;
  for (const std::string& text : texts) row.cells.push_back({text, priority ? kRed : 0});
  row.cells[1].colour = kBlue;
  return row;
}

/// Counts the keys of the mouse that were let go over the program's windows.
class Releases : public QObject {
 public:
  Releases() { qApp->installEventFilter(this); }

  int Count = 0;

 private:
  bool eventFilter(QObject* object, QEvent* event) override {
    if (object->isWindowType() && event->type() == QEvent::MouseButtonRelease) ++Count;
    return false;
  }
};

}  // namespace

ShownWindows::ShownWindows() {
  main.listViewInQueue.SetColumns({{"Pri", 375},
                                   {"Saved", 650},
                                   {"Author", 1500},
                                   {"Id", 850},
                                   {"Dept", 600},
                                   {"Work", 600},
                                   {"Subject", 1500},
                                   {"Length", 900},
                                   {"Date", 1100},
                                   {"Time", 900},
                                   {"System", 800},
                                   {"File Name", 0},
                                   {"", 0},
                                   {"", 0}});
}

void ShownWindows::ShowMain() {
  main.listViewInQueue.Visible = true;
  for (forms::Control* const control :
       {static_cast<forms::Control*>(&main.cmdUpdateFileList),
        static_cast<forms::Control*>(&main.cmdPlay), static_cast<forms::Control*>(&main.cmdSkipBeg),
        static_cast<forms::Control*>(&main.cmdRewind),
        static_cast<forms::Control*>(&main.cmdForward),
        static_cast<forms::Control*>(&main.cmdSkipEnd),
        static_cast<forms::Control*>(&main.slPosition), static_cast<forms::Control*>(&main.Slider1),
        static_cast<forms::Control*>(&main.cmdNormalSpeed),
        static_cast<forms::Control*>(&main.cmdEQ)}) {
    control->Enabled = true;
  }
  main.frmMain.Centre();
  main.frmMain.Visible = true;
  typist.Rest(400);
}

void ShownWindows::FillQueue() {
  forms::Table& list = main.listViewInQueue;
  list.Add(DocumentRow({"Pri", "", "Brown", "1234", "2", "17", "cardio", "00:11:25", "03/09/2004",
                        "14:05:12", "0007"}));
  list.Add(DocumentRow({"Pri", "Saved", "Okafor", "8801", "5", "3", "discharge", "00:03:02",
                        "03/09/2004", "15:40:00", "0007"}));
  list.Add(DocumentRow({"", "", "Lindqvist", "77", "1", "0", "intake", "00:19:44", "03/08/2004",
                        "09:12:31", "0012"}));
  list.Add(DocumentRow({"", "Saved", "Brown", "1234", "2", "17", "followup", "00:06:18",
                        "03/08/2004", "11:02:09", "0007"}));
  list.Add(DocumentRow({"", "", "Haddad", "40215", "9", "41", "deposition", "00:05:50",
                        "03/09/2004", "08:00:00", "0003"}));
  list.Add(DocumentRow(
      {"", "", "Unknown", "999999", "1", "0", "0", "00:01:12", "03/09/2004", "16:20:44", "9999"}));
  main.frameInQueue.Caption = "Queue:     6     00:47:31";
}

void ShownWindows::PlayDocument() {
  main.StatusBar1.Panels = std::vector<std::string>{
      "Pri", "1234", "Brown", "Dept: 2", "Work: 17", "Subject: cardio", "03/09/2004"};
  main.lblFilePositionHMS.Visible = true;
  main.lblFilePositionHMS.Value = "00:04:12";
  main.lblFileLengthHMS.Value = "00:11:25";
  main.lblCustomDisplay.Value = "...the steady hand!";
  main.lblCustomDisplay.Visible = true;
  main.MeterLeft.Value = 70;
  main.MeterRight.Value = 94;
  main.slPosition.Value = 37;
  main.DeckRuns = true;
  main.cmdStop.Enabled = true;
  main.cmdStop.Visible = true;
}

QPoint ShownWindows::QueueRow(int row) {
  const auto* const list = qobject_cast<QTableView*>(typist.Widget("listViewInQueue"));
  if (!list) return {};
  const QRect cell = list->visualRect(list->model()->index(row, 2));
  return list->viewport()->mapToGlobal(cell.center());
}

void ShownWindows::ClickInABreath(QPoint place) {
  const Releases releases;
  typist.ClickUnseen(place);
  EXPECT_TRUE(loop.BreatheUntil([&] { return releases.Count > 0; }, loop.Now() + kPatience));
}

}  // namespace tavlo::test
