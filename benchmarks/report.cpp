// Prints a Queue as the Report entry does, over the real disk of a home: the loop, the list's rows,
// the text and the disk are the program's; only no window shows and no word processor starts.
//
//     bench_report HOME ROWS DUMP
//
// writes the rows to DUMP first, a line each and a tab between two texts, for who formats the same.
// It says how long the command took and for how many milliseconds of its processor the loop was
// held at most.
#include "reports/report.h"

#include <QApplication>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "lists/completed_list.h"
#include "lists/document_rows.h"
#include "lists/opening.h"
#include "lists/queue_list.h"
#include "loop_hold.h"
#include "quiet_rooms.h"

namespace {

using namespace tavlo;

class NothingStarts : public reports::ProgramStarter {
 public:
  bool StartProgram(const std::string&, const std::vector<std::string>&) override { return true; }
  bool OpenTextFile(const std::string&) override { return true; }
};

class NoFigures : public lists::WorkFigures {
  void TakeWaitingWorkAsSeen() override {}
};

struct ReportRooms : bench::QuietRooms {
  using QuietRooms::QuietRooms;

  playback::Transport transport{loop, window, document, engine, voice};
  playback::Preview preview{window, document, engine, voice};
  const playback::Playback playback{document, engine, transport, preview, voice};
  NoFigures figures;
  lists::WaitingWork waitingWork{loop, figures};
  std::string importFile;
  lists::QueueList queue{loop, window, files, engine};
  lists::Opening opening{loop, window, files, playback, waitingWork, importFile};
  lists::CompletedList completed{loop, window, files, playback, opening};
  NothingStarts programs;
  reports::Report report{loop, window, files, queue, completed, programs, "bench"};
};

/// Fills the Queue with rows of documents of several authors, each minute another one.
void Fill(ReportRooms& rooms, int rows) {
  static constexpr const char* kAuthors[] = {"Brown", "Okafor", "Lindqvist", "Müller", "Haddad"};
  for (int row = 0; row < rows; ++row) {
    const std::string name = "0007 0 " + std::string(kAuthors[row % 5]) + " " +
                             std::to_string(1000 + row) + " 3 9 2004 " +
                             std::to_string(row / 60 % 24) + " " + std::to_string(row % 60) +
                             " 12 2 0 17 cardio " + (row % 3 == 0 ? "83211 " : "0 ") +
                             (row % 7 == 0 ? "P" : "0") + "_.wav";
    rooms.names.ParseDocumentName(name);
    rooms.form.listViewInQueue.Add(lists::DocumentRow(rooms.names.Record, name, "00:01:30"));
  }
}

void Dump(const std::vector<forms::Row>& rows, const char* path) {
  std::ofstream out(path, std::ios::binary);
  for (const forms::Row& row : rows) {
    for (const forms::Cell& cell : row.cells) out << cell.text << '\t';
    out << '\n';
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: bench_report HOME ROWS DUMP\n");
    return 2;
  }
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  ReportRooms rooms(argv[1]);
  Fill(rooms, std::atoi(argv[2]));
  Dump(rooms.form.listViewInQueue.Rows(), argv[3]);

  bench::LoopHold hold;
  const auto begin = std::chrono::steady_clock::now();
  rooms.form.mnuReport.Press();
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
  std::printf("seconds=%.6f held=%.3f\n", seconds.count(), hold.Milliseconds());
  return 0;
}
