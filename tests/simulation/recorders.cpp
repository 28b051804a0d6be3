#include "simulation/recorders.h"

#include <algorithm>
#include <array>
#include <utility>

#include "intake/import_directories.h"
#include "simulation/places.h"
#include "support/documents.h"

namespace tavlo::simulation {
namespace {

constexpr std::size_t kMostWriters = 12;
constexpr std::size_t kPieces = 3;

constexpr std::array<const char*, 12> kEndingsOfFiles{
    ".eW2", ".dS2", ".eU2", ".eE2", ".EW2", ".DS2", ".dss", ".DSS", ".mp3", ".wav", ".jpeg", ""};

std::string FolderThatHolds(const std::string& path) { return path.substr(0, path.rfind('/') + 1); }

std::vector<std::string> CutIntoPieces(const std::string& whole) {
  std::vector<std::string> pieces;
  const std::size_t length = whole.size() / kPieces;
  for (std::size_t at = 0; at < kPieces; ++at) {
    pieces.push_back(whole.substr(at * length, at + 1 < kPieces ? length : whole.npos));
  }
  return pieces;
}

}  // namespace

std::vector<std::string> Recorders::Folders() const {
  if (!desk_.Rooms()) return {};
  const store::WorkFolders& folders = desk_.Rooms()->folders;
  std::vector<std::string> all{folders.FtpQueuePath, folders.Ew2QueuePath, folders.Ds2QueuePath,
                               folders.Eu2QueuePath, desk_.disk.CurrentFolder + "/"};
  for (int number = 0; number < intake::kImportDirectories; ++number) {
    all.push_back(intake::ImportDirectoryPath(folders, std::to_string(number)));
  }
  std::erase_if(all, [this](const std::string& folder) {
    return folder.empty() || folder == "/" || !desk_.disk.Has(folder);
  });
  return all;
}

Ledger::WhileOpen Recorders::WhileOpenIn(const std::string& folder, Manner manner) const {
  if (manner == Manner::RenamesIntoPlace) return Ledger::WhileOpen::Stays;
  // What waits to be imported may be sent while its program goes on writing it.
  const bool imported = folder.starts_with(desk_.Rooms()->folders.WavQueuePath);
  const bool mayMove = imported || manner == Manner::ClosesOften;
  return mayMove ? Ledger::WhileOpen::MayMove : Ledger::WhileOpen::Stays;
}

std::string Recorders::SomeName(const std::string& folder) {
  const store::WorkFolders& folders = desk_.Rooms()->folders;
  const char* ending = chance_.Pick(kEndingsOfFiles);
  if (!chance_.OneIn(4)) {
    if (folder == folders.Ew2QueuePath) ending = chance_.OneIn(4) ? ".EW2" : ".eW2";
    if (folder == folders.Ds2QueuePath) ending = chance_.OneIn(4) ? ".DS2" : ".dS2";
    if (folder == folders.Eu2QueuePath) ending = chance_.OneIn(4) ? ".EU2" : ".eU2";
    if (folder == desk_.disk.CurrentFolder + "/") ending = chance_.OneIn(4) ? ".EE2" : ".eE2";
  }
  // Few names, so that one comes again while its file of before still waits.
  const bool priority = chance_.OneIn(3);
  const std::string memo = "memo " + std::to_string(chance_.Below(9)) + (priority ? " P_" : "");
  if (chance_.OneIn(2)) return memo + ending;
  test::Document document = test::Document().Id(chance_.Below(9)).Ending(ending);
  return priority ? document.Priority().Name() : document.Name();
}

std::vector<std::string> Recorders::PiecesFor(Manner manner) {
  if (manner != Manner::ClosesOften) return CutIntoPieces(NewContents());
  // What is closed passes for whole, so each piece must be known again by itself.
  const std::string number = std::to_string(ledger_.NewNumber());
  return {"text " + number + ", the first piece. ", "text " + number + ", the second piece. ",
          "text " + number + ", the last piece. "};
}

void Recorders::Begin() {
  constexpr std::array kManners{Manner::AtOnce, Manner::HoldsOpen, Manner::ClosesOften,
                                Manner::RenamesIntoPlace};
  BeginWith(chance_.Pick(kManners));
}

void Recorders::BeginWith(Manner manner) {
  const std::vector<std::string> folders = Folders();
  if (folders.empty() || writers_.size() >= kMostWriters) return;
  // Half of them write into the five folders that are swept.
  const bool swept = chance_.OneIn(2);
  const std::size_t most = swept ? std::min<std::size_t>(5, folders.size()) : folders.size();
  const std::string folder =
      folders[static_cast<std::size_t>(chance_.Below(static_cast<int>(most)))];
  const std::string path = folder + SomeName(folder);
  if (desk_.disk.Has(path)) return;
  Start({.manner = manner,
         .path = path,
         .writtenAt = manner == Manner::RenamesIntoPlace
                          ? folder + ".incoming " + std::to_string(++lastHidden_)
                          : path,
         .pieces = PiecesFor(manner),
         .whileOpen = WhileOpenIn(folder, manner)});
}

void Recorders::BeginAt(const std::string& path) {
  if (desk_.disk.Has(path) || !desk_.disk.Has(FolderThatHolds(path))) return;
  Start({.manner = Manner::HoldsOpen,
         .path = path,
         .writtenAt = path,
         .pieces = PiecesFor(Manner::HoldsOpen),
         .whileOpen = Ledger::WhileOpen::MayVanish});
}

void Recorders::Start(Writer writer) {
  trace_.Note("  recorder: writes " + Readable(writer.path));
  if (writer.manner == Manner::AtOnce) {
    std::string whole;
    for (const std::string& piece : writer.pieces) whole += piece;
    desk_.disk.WithFile(writer.path, whole);
    ledger_.Came(whole);
    return;
  }
  if (WritePiece(writer)) writers_.push_back(std::move(writer));
}

void Recorders::GoOn() {
  if (writers_.empty()) return;
  const auto at = writers_.begin() + chance_.Below(static_cast<int>(writers_.size()));
  trace_.Note("  recorder: goes on with " + Readable(at->path));
  if (!WritePiece(*at)) writers_.erase(at);
}

bool Recorders::WritePiece(Writer& writer) {
  if (writer.manner == Manner::ClosesOften) {
    WriteClosing(writer);
    return writer.holdsOpen || writer.next < writer.pieces.size();
  }
  WriteOpen(writer);
  return writer.holdsOpen;
}

void Recorders::BeginAnew(Writer& writer) {
  writer.written = writer.pieces[writer.next++];
  desk_.disk.WithFile(writer.writtenAt, writer.written);
  desk_.disk.OpenWriter(writer.writtenAt);
  writer.file = desk_.disk.NumberOf(writer.writtenAt);
  writer.holdsOpen = true;
  ledger_.Grows(writer.written, writer.writtenAt, writer.whileOpen);
}

void Recorders::WriteOpen(Writer& writer) {
  if (writer.file == 0) return BeginAnew(writer);
  const std::string stands = desk_.disk.PathOf(writer.file);
  ledger_.NoLongerGrows(writer.written);
  writer.holdsOpen = !stands.empty();
  // Somebody deleted it from under its writer.
  if (stands.empty()) return;
  if (writer.next < writer.pieces.size()) {
    writer.written += writer.pieces[writer.next++];
    desk_.disk.Write(stands, writer.written);
    ledger_.Grows(writer.written, stands, writer.whileOpen);
    return;
  }
  Close(writer);
  if (writer.manner == Manner::RenamesIntoPlace) PutIntoPlace(writer);
}

/// Its first turn writes and holds the file, the second closes it, and so on.
void Recorders::WriteClosing(Writer& writer) {
  if (writer.holdsOpen) return Close(writer);
  const bool isAlone = writer.file != 0 && Ledger::FilesOf(desk_.disk, writer.written).size() == 1;
  const bool standsThere = desk_.disk.NumberOf(writer.path) == writer.file;
  if (writer.file == 0 || !desk_.disk.Has(writer.path)) return BeginAnew(writer);
  if (!isAlone || !standsThere) {
    // Somebody else's file has its name by now.
    writer.next = writer.pieces.size();
    return;
  }
  ledger_.Forget(writer.written);
  desk_.disk.OpenWriter(writer.path);
  writer.holdsOpen = true;
  writer.written += writer.pieces[writer.next++];
  desk_.disk.Write(writer.path, writer.written);
  ledger_.Grows(writer.written, writer.path, writer.whileOpen);
}

void Recorders::Close(Writer& writer) {
  const std::string stands = desk_.disk.PathOf(writer.file);
  ledger_.NoLongerGrows(writer.written);
  writer.holdsOpen = false;
  if (stands.empty()) return;
  desk_.disk.CloseWriter(stands);
  ledger_.CameAt(stands, writer.written);
}

void Recorders::PutIntoPlace(Writer& writer) {
  // Where its name is taken, or its folder has gone, it stays what it is.
  if (desk_.disk.Has(writer.path) || !desk_.disk.Has(writer.writtenAt)) return;
  desk_.disk.Remove(writer.writtenAt);
  desk_.disk.WithFile(writer.path, writer.written);
}

void Recorders::Finish() {
  for (std::size_t turns = writers_.size() * kPieces * 2; turns > 0 && !writers_.empty(); --turns) {
    if (!WritePiece(writers_.front())) writers_.erase(writers_.begin());
  }
  writers_.clear();
}

void Recorders::LosePower() {
  for (Writer& writer : writers_) {
    if (writer.holdsOpen) Close(writer);
  }
  writers_.clear();
}

}  // namespace tavlo::simulation
