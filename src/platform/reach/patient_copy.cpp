#include "platform/reach/patient_copy.h"

#include <utility>

namespace tavlo::platform {

using store::DiskResult;

PatientCopy::~PatientCopy() {
  errands_.LetGo(sourcePlace_, std::move(source_));
  errands_.LetGo(targetPlace_, std::move(target_));
}

template <typename End>
DiskResult PatientCopy::Do(const Place& place, const std::shared_ptr<End>& end,
                           std::function<DiskResult(End&)> piece) {
  const auto work = [end, piece = std::move(piece)](Errands::Sign&) { end->result = piece(*end); };
  return errands_.Run(place, work) ? end->result : DiskResult::OutOfReach;
}

DiskResult PatientCopy::Run(const std::string& from, const std::string& to) {
  const DiskResult opened = Do<Source>(
      sourcePlace_, source_, [from](Source& source) { return source.file.emplace(from).Opened(); });
  if (opened != DiskResult::Done) return opened;
  const DiskResult made = Do<Target>(targetPlace_, target_, [to](Target& target) {
    return target.file.emplace(to, kFlushedAtOnce).Opened();
  });
  if (made != DiskResult::Done) return made;
  while (true) {
    const DiskResult read = Do<Source>(
        sourcePlace_, source_, [](Source& source) { return source.file->Read(source.block); });
    if (read != DiskResult::Done) return read;
    if (source_->block.empty()) break;
    const auto block = std::make_shared<std::vector<char>>(std::move(source_->block));
    const DiskResult written = Do<Target>(
        targetPlace_, target_, [block](Target& target) { return target.file->Write(*block); });
    if (written != DiskResult::Done) return written;
  }
  return Do<Target>(targetPlace_, target_, [status = source_->file->Status()](Target& target) {
    return target.file->Finish(status);
  });
}

}  // namespace tavlo::platform
