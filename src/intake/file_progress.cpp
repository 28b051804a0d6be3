#include "intake/file_progress.h"

#include <utility>

namespace tavlo::intake {

FileProgress::FileProgress(Say say, std::string doing, std::optional<std::size_t> files)
    : say_(std::move(say)), doing_(std::move(doing)), files_(files) {}

FileProgress::~FileProgress() {
  if (told_) say_({});
}

void FileProgress::Next() {
  ++begun_;
  if (files_.value_or(begun_) < kWorthTelling) return;
  told_ = true;
  const std::string number = std::to_string(begun_);
  say_(files_ ? doing_ + " " + number + " of " + std::to_string(*files_) + " files"
              : doing_ + " file " + number);
}

}  // namespace tavlo::intake
