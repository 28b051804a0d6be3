#include "platform/ffmpeg/measured_files.h"

#include <functional>
#include <utility>

namespace tavlo::platform {
namespace {

constexpr std::size_t kGeneration = 50'000;

std::size_t HashOf(const std::string& path) { return std::hash<std::string>()(path); }

}  // namespace

const SoundFigures* MeasuredFiles::Find(const std::string& path) {
  const std::size_t hash = HashOf(path);
  const Entry* const known = Recall(hash);
  if (!known) return nullptr;
  const auto identity = IdentityOf(path);
  if (identity) return Weigh(hash, *known, *identity);
  Forget(hash);
  return nullptr;
}

const SoundFigures* MeasuredFiles::Find(const std::string& path, const FileIdentity& identity) {
  const std::size_t hash = HashOf(path);
  const Entry* const known = Recall(hash);
  return known ? Weigh(hash, *known, identity) : nullptr;
}

void MeasuredFiles::Remember(const std::string& path, const FileIdentity& identity,
                             const SoundFigures& figures) {
  Remember(HashOf(path), {identity, figures});
}

const MeasuredFiles::Entry* MeasuredFiles::Recall(std::size_t path) {
  const auto found = recent_.find(path);
  if (found != recent_.end()) return &found->second;
  const auto old = older_.find(path);
  if (old == older_.end()) return nullptr;
  Remember(path, Entry(old->second));
  return &recent_.find(path)->second;
}

const SoundFigures* MeasuredFiles::Weigh(std::size_t path, const Entry& entry,
                                         const FileIdentity& identity) {
  if (entry.identity == identity) return &entry.figures;
  Forget(path);
  return nullptr;
}

void MeasuredFiles::Remember(std::size_t path, const Entry& entry) {
  if (recent_.size() >= kGeneration) {
    older_ = std::move(recent_);
    recent_.clear();
  }
  recent_[path] = entry;
}

void MeasuredFiles::Forget(std::size_t path) {
  recent_.erase(path);
  older_.erase(path);
}

}  // namespace tavlo::platform
