#include "intake/import_sending.h"

#include "intake/file_progress.h"
#include "intake/import_directories.h"
#include "store/document_name.h"
#include "store/settings_fields.h"

namespace tavlo::intake {
namespace {

using store::DiskResult;

/// Names that are looked at for one file: an hour of seconds.
constexpr int kMostNames = 3600;
constexpr int kLargestByte = 255;

base::CalendarTime CarriedOver(base::CalendarTime time) {
  if (time.second > 59) {
    time.second = 0;
    ++time.minute;
  }
  if (time.minute > 59) {
    time.minute = 0;
    ++time.hour;
  }
  if (time.hour > 23) time.hour = 0;
  return time;
}

base::CalendarTime NextSecond(base::CalendarTime time) {
  ++time.second;
  return CarriedOver(time);
}

}  // namespace

bool BatchTimes::Next() {
  ++step_;
  if (time_.second + step_ > kLargestByte) return false;
  time_.second += step_;
  time_ = CarriedOver(time_);
  return true;
}

ImportSending::ImportSending(base::Loop& loop, window::MainWindow& window,
                             const store::DocumentFiles& files, const playback::Playback& playback,
                             ImportList& list, Claims& claims)
    : loop_(loop),
      form_(window.Form()),
      window_(window),
      disk_(files.disk),
      folders_(files.folders),
      moves_(files.moves),
      carrier_(files.disk, files.moves, claims),
      engine_(playback.engine),
      voice_(playback.voice),
      list_(list) {
  form_.cmdSendImportFileToQueue.OnPress = [this] { SendOne(); };
  form_.cmdSendAllImportFilesToQueue.OnPress = [this] { SendAll(); };
}

void ImportSending::SendOne() {
  if (!window_.guards.ListsMayChange()) return;
  engine_.StopPlay();
  engine_.CloseFile();
  const std::string name = list_.SelectedImportFile;
  if (name.empty()) {
    voice_.PlayPrompt("MoveErrQueue");
    window_.FocusAway();
    return;
  }
  engine_.tmrPlaySnipet.Stop();
  {
    const forms::Hourglass hourglass(form_.frmMain);
    const std::string directory = form_.txtWavImportSubdirectory.Value;
    const ImportSent sent =
        SendToQueue(ImportDirectoryPath(folders_, directory), name, loop_.WallClock());
    window_.Say(ImportSentInWords(sent, name, folders_));
    list_.RefreshImportList(directory);
    // This is intended: the frame is out of sight here, and the next Completed list puts its
    // caption right.
    form_.frameCompleted.Caption =
        "Import:     " + std::to_string(list_.ImportCount) + "     00:00:00";
    list_.SetImportButtons();
    list_.SelectedImportFile.clear();
    if (sent.Done()) voice_.PlayPrompt("SentOneImport");
  }
  if (!window_.guards.RefreshIsQuiet()) window_.FocusAway();
}

void ImportSending::SendAll() {
  // Automatic import works inside a list change of its own.
  if (!list_.AutoImportRunning && !window_.guards.ListsMayChange()) return;
  engine_.StopPlay();
  engine_.CloseFile();
  const std::string folder = ImportDirectoryPath(folders_, form_.txtWavImportSubdirectory.Value);
  const store::Listing listing = disk_.ListPlainFiles(folder);
  if (listing.names.empty()) {
    window_.Say(ImportBatchInWords({.whole = listing.finished}));
    return;
  }
  if (!list_.AutoImportRunning &&
      !list_.UserAgrees("Are you sure you want to send all the Imported files to the Queue?",
                        base::Reply::Yes)) {
    window_.FocusAway();
    return;
  }
  engine_.tmrPlaySnipet.Stop();
  {
    const forms::Hourglass hourglass(form_.frmMain);
    const ImportBatch batch = SendBatch(folder, listing);
    ShowBatch(batch);
    // A batch that ran past its times has done what it can, and its line says so.
    const bool done = batch.NoneStays() && !batch.endedEarly;
    if (done && !list_.AutoImportRunning) voice_.PlayPrompt("SentAllImport");
  }
  if (!window_.guards.RefreshIsQuiet()) window_.FocusAway();
}

ImportBatch ImportSending::SendBatch(const std::string& folder, const store::Listing& listing) {
  const window::ListPause pause(window_.guards);
  ImportBatch batch{.files = static_cast<int>(listing.names.size()), .whole = listing.finished};
  BatchTimes times(loop_.WallClock());
  FileProgress progress([this](const auto& text) { window_.SayHowFar(text); }, "Sending",
                        listing.names.size());
  for (const std::string& name : listing.names) {
    progress.Next();
    loop_.Breathe();
    if (!times.Next()) {
      batch.pastItsTimes = true;
      break;
    }
    const ImportSent sent = SendToQueue(folder, name, times.Time());
    const DiskResult result = sent.moved.result;
    // Somebody else has taken it meanwhile.
    const bool gone = !sent.inUse && result == DiskResult::NotFound && !disk_.Facts(folder + name);
    if (gone && !disk_.OutOfReach(folder)) {
      --batch.files;
      continue;
    }
    batch.sent += sent.Done();
    batch.inUse += sent.inUse;
    if (sent.Done() || sent.inUse) continue;
    CountFailure(sent, batch);
    // Whatever is asked from here on fares no better.
    batch.endedEarly = result == DiskResult::OutOfReach || result == DiskResult::NoSpace;
    if (batch.endedEarly) {
      batch.result = result;
      break;
    }
  }
  return batch;
}

void ImportSending::CountFailure(const ImportSent& sent, ImportBatch& batch) {
  const store::Moved& moved = sent.moved;
  if (batch.result == DiskResult::Done) batch.result = moved.result;
  if (moved.result == DiskResult::OutOfReach && moved.asked) {
    ++batch.notKnown;
  } else if (moved.arrived) {
    ++batch.arrived;
  } else {
    ++batch.failed;
    batch.rescued += !moved.rescued.empty();
  }
}

void ImportSending::ShowBatch(const ImportBatch& batch) {
  if (batch.pastItsTimes || batch.endedEarly) {
    // What was not sent yet stays where it is, and shows.
    list_.RefreshImportList(form_.txtWavImportSubdirectory.Value);
    list_.SetImportButtons();
    list_.SelectedImportFile.clear();
  } else {
    list_.ShowAsEmptied(batch.AllSent());
  }
  window_.Say(ImportBatchInWords(batch));
}

ImportSent ImportSending::SendToQueue(const std::string& folder, const std::string& name,
                                      base::CalendarTime sentAt) {
  ImportSent sent;
  for (int tries = 0; tries < kMostNames; ++tries) {
    sent = MoveToQueue(folder, name, folders_.InQueuePath + ComposedName(name, sentAt));
    if (sent.inUse || sent.moved.result != DiskResult::AlreadyThere) return sent;
    sentAt = NextSecond(sentAt);
  }
  return sent;
}

ImportSent ImportSending::MoveToQueue(const std::string& folder, const std::string& name,
                                      const std::string& target) {
  const std::string source = folder + name;
  const store::Moved renamed = moves_.MoveInOneStep(source, target, store::InTheWay::Stays);
  switch (renamed.result) {
    case DiskResult::Done:
    case DiskResult::AlreadyThere:
    case DiskResult::OutOfReach:
      return {.moved = renamed};
    case DiskResult::OtherFileSystem:
      return CopyToQueue(folder, name, target);
    default:
      return {.moved = moves_.MoveOrRescue(source, target, store::InTheWay::Stays)};
  }
}

/// Other decks may send from the same directory, so what is copied is claimed before. After a
/// failure the file stays in its directory: the rescue folder lies on the disk that could not take
/// it, and a dot file of a share is seen by nobody.
ImportSent ImportSending::CopyToQueue(const std::string& folder, const std::string& name,
                                      const std::string& target) {
  // A rename takes the writer along. A copy would lack what it still writes.
  if (disk_.TestReadiness(folder + name) == store::Readiness::InUse) return {.inUse = true};
  // A copy for a name that is taken would be for nothing.
  if (disk_.Look(target) == store::Entry::PlainFile) {
    return {.moved = {.result = DiskResult::AlreadyThere}};
  }
  const Carried carried = carrier_.CarryAcross(folder, name, target, store::InTheWay::Stays);
  switch (carried.outcome) {
    case Carried::Outcome::Arrived:
      return {.moved = {.arrived = true}};
    case Carried::Outcome::TakenByAnother:
      return {.moved = {.result = DiskResult::NotFound}};
    case Carried::Outcome::InUse:
      return {.inUse = true};
    case Carried::Outcome::OutOfReach:
      return {.moved = {.result = DiskResult::OutOfReach, .asked = carried.asked}};
    case Carried::Outcome::NameTooLong:
      return {.nameTooLong = true, .moved = {.result = carried.why}};
    default:
      return {.moved = {.result = carried.why, .arrived = carried.arrived}};
  }
}

std::string ImportSending::ComposedName(const std::string& name, base::CalendarTime sentAt) const {
  return store::ComposeDocumentName({
      .systemId = form_.txtWavImportSubdirectory.Value,
      .authorName = form_.txtImportAuthorLastName.Value,
      .authorId = form_.txtImportAuthorID.Value,
      .sentAt = sentAt,
      .department = form_.txtImportDepartment.Value,
      .workType = form_.txtImportWorktype.Value,
      .subject = form_.txtImportSubject.Value,
      .priority = store::IsYes(form_.txtImportPriority.Value.Get()),
      .sourceName = name,
  });
}

}  // namespace tavlo::intake
