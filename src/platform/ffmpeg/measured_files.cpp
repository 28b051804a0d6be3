#include "platform/ffmpeg/measured_files.h"

#include <functional>
#include <utility>

namespace tavlo::platform {
namespace {

constexpr std::size_t kGeneration = 50'000;

std::size_t HashOf(const std::string& path) { return std::hash<std::string>()(path); }

}  // namespace

std::optional<SoundFigures> MeasuredFiles::Find(const std::string& path) {
  const std::size_t hash = HashOf(path);
  if (!Knows(hash)) return std::nullopt;
  return Weigh(hash, IdentityOf(path));
}

std::optional<SoundFigures> MeasuredFiles::Find(const std::string& path,
                                                const FileIdentity& identity) {
  return Weigh(HashOf(path), identity);
}

void MeasuredFiles::Remember(const std::string& path, const FileIdentity& identity,
                             const SoundFigures& figures) {
  const std::lock_guard lock(mutex_);
  Remember(HashOf(path), {identity, figures});
}

bool MeasuredFiles::Knows(std::size_t path) {
  const std::lock_guard lock(mutex_);
  return Recall(path) != nullptr;
}

std::optional<SoundFigures> MeasuredFiles::Weigh(std::size_t path,
                                                 const std::optional<FileIdentity>& identity) {
  const std::lock_guard lock(mutex_);
  const Entry* const known = Recall(path);
  if (!known) return std::nullopt;
  if (known->identity == identity) return known->figures;
  recent_.erase(path);
  older_.erase(path);
  return std::nullopt;
}

const MeasuredFiles::Entry* MeasuredFiles::Recall(std::size_t path) {
  const auto found = recent_.find(path);
  if (found != recent_.end()) return &found->second;
  const auto old = older_.find(path);
  if (old == older_.end()) return nullptr;
  Remember(path, Entry(old->second));
  return &recent_.find(path)->second;
}

void MeasuredFiles::Remember(std::size_t path, const Entry& entry) {
  if (recent_.size() >= kGeneration) {
    older_ = std::move(recent_);
    recent_.clear();
  }
  recent_[path] = entry;
}

}  // namespace tavlo::platform
