#include "platform/ffmpeg/measured_files.h"

#include <utility>

namespace tavlo::platform {
namespace {

constexpr std::size_t kGeneration = 50'000;

}  // namespace

const SoundFigures* MeasuredFiles::Find(const std::string& path) {
  const Entry* const known = Recall(path);
  if (!known) return nullptr;
  const auto identity = IdentityOf(path);
  if (identity) return Weigh(path, *known, *identity);
  Forget(path);
  return nullptr;
}

const SoundFigures* MeasuredFiles::Find(const std::string& path, const FileIdentity& identity) {
  const Entry* const known = Recall(path);
  return known ? Weigh(path, *known, identity) : nullptr;
}

const MeasuredFiles::Entry* MeasuredFiles::Recall(const std::string& path) {
  const auto found = recent_.find(path);
  if (found != recent_.end()) return &found->second;
  const auto old = older_.find(path);
  if (old == older_.end()) return nullptr;
  const Entry entry = old->second;
  Remember(path, entry.identity, entry.figures);
  return &recent_.find(path)->second;
}

const SoundFigures* MeasuredFiles::Weigh(const std::string& path, const Entry& entry,
                                         const FileIdentity& identity) {
  if (entry.identity == identity) return &entry.figures;
  Forget(path);
  return nullptr;
}

void MeasuredFiles::Forget(const std::string& path) {
  recent_.erase(path);
  older_.erase(path);
}

void MeasuredFiles::Remember(const std::string& path, const FileIdentity& identity,
                             const SoundFigures& figures) {
  if (recent_.size() >= kGeneration) {
    older_ = std::move(recent_);
    recent_.clear();
  }
  recent_[path] = {identity, figures};
}

}  // namespace tavlo::platform
