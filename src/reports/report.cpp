#include "reports/report.h"

#include <algorithm>
#include <optional>
#include <tuple>
#include <utility>
#include <vector>

#include "base/text.h"
#include "reports/start_command.h"
#include "store/disk_words.h"

namespace tavlo::reports {
namespace {

using store::DiskResult;

constexpr std::string_view kTitle = "Tavlo Deck - Report";

std::optional<ReportKind> KindOf(std::string_view view) {
  if (view == "Queue") return ReportKind::Queue;
  if (view == "Complete") return ReportKind::Completed;
  return std::nullopt;
}

base::MessageBox Box(std::string text, base::Icon icon) {
  return {.title = std::string(kTitle), .text = std::move(text), .icon = icon};
}

/// A dot keeps it out of the lists of people and programs until it is whole.
std::string BesideOf(std::string path) { return path.insert(path.rfind('/') + 1, "."); }

}  // namespace

Report::Report(base::Loop& loop, window::MainWindow& window, const store::DocumentFiles& files,
               const lists::QueueList& queue, const lists::CompletedList& completed,
               ProgramStarter& programs, std::string programVersionText)
    : loop_(loop),
      window_(window),
      form_(window.Form()),
      disk_(files.disk),
      folders_(files.folders),
      names_(files.names),
      queue_(queue),
      completed_(completed),
      programs_(programs),
      programVersionText_(std::move(programVersionText)) {
  form_.mnuReport.OnPress = [this] { WriteReport(); };
}

void Report::WriteReport() {
  const std::optional<ReportKind> kind = KindOf(window_.CurrentView);
  if (!kind) return;
  const forms::Table& list =
      *kind == ReportKind::Queue ? form_.listViewInQueue : form_.listViewCompleted;
  const base::MessageBox box =
      list.Rows().empty() ? Box("There are no documents to report", base::Icon::Information)
                          : WriteAndOpen(*kind);
  if (!box.text.empty()) loop_.Show(box);
  window_.FocusAway();
}

base::MessageBox Report::WriteAndOpen(ReportKind kind) {
  // One that shows already is another command's, which waits, and which no exit may interrupt.
  std::optional<forms::Hourglass> hourglass;
  if (form_.frmMain.MousePointer == forms::Pointer::Arrow) hourglass.emplace(form_.frmMain);
  const std::string path =
      kind == ReportKind::Queue ? folders_.QueueReportPath() : folders_.CompletedReportPath();
  const DiskResult written = Replace(path, Compose(kind));
  if (written != DiskResult::Done) {
    return Box(
        "The report could not be written: " + std::string(store::WhyNot(written)) + ".\n\n" + path,
        base::Icon::Warning);
  }
  if (Open(path)) return {};
  return Box("The report is in the file\n" + path + "\n\nNo program could be started to show it.",
             base::Icon::Information);
}

std::string Report::Compose(ReportKind kind) {
  const bool ofQueue = kind == ReportKind::Queue;
  const forms::Table& list = ofQueue ? form_.listViewInQueue : form_.listViewCompleted;
  // After Return to Queue the caption over the Completed list says 00:00:00 until the next list.
  // This is our own decision: the report does not take that over but tells the total of the rows in
  // it.
  const double total = ofQueue ? queue_.QueueTotalLength : completed_.CompletedTotalLength;
  const ReportFacts facts{.programVersionText = programVersionText_,
                          .dateFormat = names_.DateFormat,
                          .created = loop_.WallClock(),
                          .totalLength = base::FormatHMS(total)};
  return ReportText(kind, facts, list.Rows(), [this] { loop_.Breathe(); });
}

DiskResult Report::Replace(const std::string& path, std::string_view text) {
  const std::string beside = BesideOf(path);
  DiskResult result = WriteBeside(beside, text);
  if (result == DiskResult::Done) {
    result = disk_.Delete(path);
    // The first report of its kind.
    if (result == DiskResult::NotFound) result = DiskResult::Done;
  }
  if (result == DiskResult::Done) result = disk_.Rename(beside, path);
  // A place that owes an answer is asked for nothing more. The next report takes away what is left.
  if (result != DiskResult::Done && result != DiskResult::OutOfReach) {
    std::ignore = disk_.Delete(beside);
  }
  return result;
}

DiskResult Report::WriteBeside(const std::string& beside, std::string_view text) {
  const DiskResult cleared = disk_.Delete(beside);
  if (cleared != DiskResult::Done && cleared != DiskResult::NotFound) return cleared;
  const DiskResult written = disk_.Append(beside, text);
  if (written != DiskResult::NotFound) return written;
  // Somebody has cleared the folder away since the start made it.
  const std::string folder = folders_.ReportsPath();
  const DiskResult made = disk_.MakeFolder(folder.substr(0, folder.size() - 1));
  return made == DiskResult::Done ? disk_.Append(beside, text) : made;
}

bool Report::Open(const std::string& path) {
  const std::vector<StartCommand> commands =
      ReadStartCommand(window_.Config().txtWordProcessorPath.Value.Get());
  const auto starts = [&](StartCommand command) {
    command.arguments.push_back(path);
    return programs_.StartProgram(command.program, command.arguments);
  };
  return std::ranges::any_of(commands, starts) || programs_.OpenTextFile(path);
}

}  // namespace tavlo::reports
