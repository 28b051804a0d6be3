// What the typist prints and tidies up at the end of a day, and the faces that the deck can have.
#include <QDir>
#include <QWidget>
#include <string>

#include "day.h"
#include "desk.h"
#include "support/face.h"

namespace tavlo::tour {
namespace {

namespace column = forms::document_column;

/// As many as are installed.
constexpr int kFaces = 8;

QString ReportPath(const char* kind) {
  return InHome(QString("Lyrane/TavloDeck/Reports/Tavlo_Deck_%1_Report.txt").arg(kind));
}

/// The report names each of the list's authors as often as the list does, and is whole.
bool IsReportOf(const QByteArray& report, const char* kind, const forms::Table& list) {
  for (int row = 0; row < static_cast<int>(list.Rows().size()); ++row) {
    if (!report.contains(list.TextAt(row, column::Author).c_str())) return false;
  }
  // A line of dashes follows each row, and stands below the headings.
  return report.count("\n+---+") == static_cast<int>(list.Rows().size()) + 1 &&
         report.endsWith("End of " + QByteArray(kind) + " Report\n");
}

}  // namespace

void Day::AddReports(std::vector<Step>& steps) {
  AddReport(steps, "Queue", Main().listViewInQueue);
  AddCompleting(steps, "Brown");
  steps.push_back(
      {.says = "the Completed view has it, with what was completed before",
       .act =
           [this] {
             typist_.KeysUnseen({keys::kAlt, 'v'});
             typist_.KeysUnseen({'c'});
           },
       .seen = [this] { return CompletedShows() && Main().listViewCompleted.Rows().size() == 3; }});
  AddReport(steps, "Completed", Main().listViewCompleted);
}

void Day::AddReport(std::vector<Step>& steps, const char* kind, const forms::Table& list) {
  const std::string title = "Tavlo_Deck_" + std::string(kind) + "_Report.txt - Writer";
  steps.push_back(Keys({keys::kAlt, 'r'}, "Report writes down what the list shows", [kind, &list] {
    return IsReportOf(ContentsOf(ReportPath(kind)), kind, list);
  }));
  steps.push_back({.says = "and starts the word processor with it", .seen = [this, kind, title] {
                     return WriterArguments() == (ReportPath(kind) + "\n").toUtf8() &&
                            WindowOf(title).id != XCB_NONE;
                   }});
  steps.push_back(ClickWindow(title, "which shows it", "report-of-" + std::string(kind)));
  steps.push_back(Keys({keys::kAlt, keys::kF4}, "the word processor is closed",
                       [this, title] { return WindowOf(title).id == XCB_NONE; }));
  steps.push_back({.says = "and the deck has the keyboard",
                   .act =
                       [this] {
                         const QWidget* const deck = typist_.Widget("frmMain");
                         if (deck) typist_.Summon(*deck);
                       },
                   .seen = [this] { return Main().frmMain.HasKeyboard && !BoxOpen(); }});
}

void Day::AddDeleting(std::vector<Step>& steps) {
  const auto row = [this] { return RowIn(Main().listViewCompleted, "Brown"); };
  steps.push_back(
      {.says = "a click chooses the document",
       .act = [this, row] { ClickAuthor("listViewCompleted", row()); },
       .seen = [this, row] { return Playing() && Main().listViewCompleted.ListIndex == row(); },
       .over = [this] { return !Playing(); }});
  steps.push_back(Click(
      "cmdDeleteOneCompleted", "Delete One asks first", [this] { return BoxOpen(); },
      "delete-one"));
  steps.push_back(Answer("Yes", "yes deletes it for good", [this, row] {
    const QDir completed(InHome("Lyrane/TavloDeck/Files/Completed"));
    return CompletedShows() && row() < 0 && Main().listViewCompleted.Rows().size() == 2 &&
           completed.entryList(QDir::Files).filter("Brown").isEmpty();
  }));
  steps.push_back({.says = "back in the Queue it is no more",
                   .act =
                       [this] {
                         typist_.KeysUnseen({keys::kAlt, 'v'});
                         typist_.KeysUnseen({'q'});
                       },
                   .seen =
                       [this] {
                         return Ready() && QDir(InHome("Lyrane/TavloDeck/Files/InQueue"))
                                               .entryList(QDir::Files)
                                               .filter("cardio")
                                               .isEmpty();
                       }});
}

bool Day::CompletedShows() {
  return Main().frameCompleted.Visible && Main().cmdMoveToQueue.Enabled &&
         Main().frmMain.MousePointer == forms::Pointer::Arrow;
}

void Day::AddFaces(std::vector<Step>& steps) {
  for (int click = 1; click <= kFaces; ++click) {
    const int face = click % kFaces + 1;
    const bool left = click % 2 == 1;
    steps.push_back(
        {.says = click < kFaces ? "a click beside the keys gives the deck another face"
                                : "and the last one the first face again",
         .act =
             [this, left] {
               const QWidget* const half = typist_.Widget(left ? "imageFaciaA" : "imageFaciaB");
               constexpr QPoint kInside(6, 6);
               if (!half) return;
               typist_.ClickUnseen(half->mapToGlobal(
                   left ? kInside : QPoint(half->width() - kInside.x(), kInside.y())));
             },
         .seen =
             [this, face] {
               return Rooms()->fascia.FasciaIndex == face &&
                      static_cast<int>(Main().listFasciaImages.Rows().size()) == kFaces &&
                      !test::FaceIsOnItsWay();
             },
         .picture = face % 3 == 2 ? "face-" + std::to_string(face) : ""});
  }
}

}  // namespace tavlo::tour
