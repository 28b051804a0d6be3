#include "platform/reach/patient_disk.h"

#include <utility>

#include "platform/reach/patient_copy.h"
#include "platform/reach/patient_walk.h"

namespace tavlo::platform {

using store::Disk;
using store::DiskResult;
using store::Entry;
using store::FileFacts;
using store::Listing;
using store::Readiness;

PatientDisk::PatientDisk(PlaceErrands& errands, HeldFileMeters& meters,
                         std::function<void()> breathe, WriterWatch::Clock clock,
                         WriterWatch::LeaseTrust leaseTrust)
    : errands_(errands),
      meters_(meters),
      clock_(clock),
      leaseTrust_(leaseTrust),
      breathe_(std::move(breathe)),
      meter_(meters_.Make()),
      here_(std::move(clock), std::move(leaseTrust), breathe_) {}

std::shared_ptr<PlaceDisk> PatientDisk::DiskOf(const Place& place) {
  std::shared_ptr<PlaceDisk>& disk = there_[place.mount];
  if (!disk) disk = std::make_shared<PlaceDisk>(clock_, leaseTrust_, meters_.Make());
  return disk;
}

template <typename Answer>
Answer PatientDisk::AskAt(const Place& place, std::function<Answer(Disk&)> call, Answer otherwise) {
  if (!place.mayStall) return call(here_);
  const auto answer = std::make_shared<Answer>(otherwise);
  const auto work = [answer, call = std::move(call), there = DiskOf(place)](Errands::Sign& sign) {
    const AtHand atHand(*there, sign);
    *answer = call(there->disk);
  };
  // Work that is left behind may still write its answer.
  return errands_.Run(place, work) ? std::move(*answer) : otherwise;
}

Listing PatientDisk::ListPlainFiles(const std::string& folder) {
  return Ask<Listing>(folder, [folder](Disk& disk) { return disk.ListPlainFiles(folder); }, {});
}

Listing PatientDisk::ListDotFiles(const std::string& folder) {
  return Ask<Listing>(folder, [folder](Disk& disk) { return disk.ListDotFiles(folder); }, {});
}

std::optional<store::FolderMark> PatientDisk::MarkOf(const std::string& folder) {
  if (errands_.PlaceOf(folder).mayStall) return {};
  return here_.MarkOf(folder);
}

std::unique_ptr<store::FolderWalk> PatientDisk::Walk(const std::string& folder) {
  const Place place = errands_.PlaceOf(folder);
  if (!place.mayStall && !kWalkAheadOfLocal) return here_.Walk(folder);
  return std::make_unique<PatientWalk>(errands_, place, DiskOf(place),
                                       PatientWalk::Own{.meter = *meter_, .breathe = breathe_},
                                       folder);
}

std::optional<FileFacts> PatientDisk::Facts(const std::string& path) {
  return AskOfEntry<std::optional<FileFacts>>(path, [path](Disk& disk) { return disk.Facts(path); },
                                              {});
}

std::optional<std::int64_t> PatientDisk::ChangedAt(const std::string& path) {
  return AskOfEntry<std::optional<std::int64_t>>(
      path, [path](Disk& disk) { return disk.ChangedAt(path); }, {});
}

Entry PatientDisk::Look(const std::string& path) {
  return Ask<Entry>(
      path, [path](Disk& disk) { return disk.Look(path); }, Entry::OutOfReach);
}

Readiness PatientDisk::TestReadiness(const std::string& path) {
  return AskOfEntry<Readiness>(
      path, [path](Disk& disk) { return disk.TestReadiness(path); }, Readiness::OutOfReach);
}

DiskResult PatientDisk::SetAttributesNormal(const std::string& path) {
  return AskOfEntry<DiskResult>(
      path, [path](Disk& disk) { return disk.SetAttributesNormal(path); }, DiskResult::OutOfReach);
}

DiskResult PatientDisk::Renew(const std::string& path) {
  return AskOfEntry<DiskResult>(
      path, [path](Disk& disk) { return disk.Renew(path); }, DiskResult::OutOfReach);
}

DiskResult PatientDisk::Copy(const std::string& from, const std::string& to) {
  const Place source = errands_.PlaceOfEntry(from);
  const Place target = errands_.PlaceOfEntry(to);
  if (!source.mayStall && !target.mayStall) return here_.Copy(from, to);
  return PatientCopy(errands_, source, target).Run(from, to);
}

DiskResult PatientDisk::Rename(const std::string& from, const std::string& to) {
  const Place source = errands_.PlaceOfEntry(from);
  const Place target = errands_.PlaceOfEntry(to);
  if (source.mount != target.mount && (source.mayStall || target.mayStall)) {
    // The kernel would say the same, but it would ask both places before.
    if (OutOfReach(from) || OutOfReach(to)) return DiskResult::OutOfReach;
    return DiskResult::OtherFileSystem;
  }
  return AskAt<DiskResult>(
      source, [from, to](Disk& disk) { return disk.Rename(from, to); }, DiskResult::OutOfReach);
}

DiskResult PatientDisk::Delete(const std::string& path) {
  return AskOfEntry<DiskResult>(
      path, [path](Disk& disk) { return disk.Delete(path); }, DiskResult::OutOfReach);
}

DiskResult PatientDisk::Append(const std::string& path, std::string_view text) {
  return AskOfEntry<DiskResult>(
      path, [path, text = std::string(text)](Disk& disk) { return disk.Append(path, text); },
      DiskResult::OutOfReach);
}

DiskResult PatientDisk::MakeLink(const std::string& target, const std::string& path) {
  return AskOfEntry<DiskResult>(
      path, [target, path](Disk& disk) { return disk.MakeLink(target, path); },
      DiskResult::OutOfReach);
}

DiskResult PatientDisk::MakeFolder(const std::string& path) {
  return AskOfEntry<DiskResult>(
      path, [path](Disk& disk) { return disk.MakeFolder(path); }, DiskResult::OutOfReach);
}

DiskResult PatientDisk::RemoveFolder(const std::string& path) {
  return Ask<DiskResult>(
      path, [path](Disk& disk) { return disk.RemoveFolder(path); }, DiskResult::OutOfReach);
}

DiskResult PatientDisk::FlushFolder(const std::string& folder) {
  return Ask<DiskResult>(
      folder, [folder](Disk& disk) { return disk.FlushFolder(folder); }, DiskResult::OutOfReach);
}

}  // namespace tavlo::platform
