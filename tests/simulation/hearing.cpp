#include "simulation/hearing.h"

#include <algorithm>
#include <cstdlib>

#include "simulation/trace.h"
#include "store/document_name.h"

namespace tavlo::simulation {
namespace {

/// The text of the field in which the program stores a position: the one before the last blank.
std::string StoredIn(const std::string& name) {
  const auto end = name.rfind(' ');
  const auto begin = end == name.npos || end == 0 ? name.npos : name.rfind(' ', end - 1);
  return begin == name.npos ? "" : name.substr(begin + 1, end - begin - 1);
}

}  // namespace

void Hearing::Opened(const std::string& path, const std::optional<Recording>& sound) {
  if (path != path_) {
    Forget();
    path_ = path;
    store::DocumentNames names(loop_);
    names.ParseDocumentName(path.substr(path.rfind('/') + 1));
    storedOrChosen_ = names.Record.SavedPosition;
  }
  if (sound) sound_ = sound;
  const bool heardAtAll = sound && sound->samples * 1000 / sound->rate > 0;
  couldNotBePlayed_ = couldNotBePlayed_ || !heardAtAll;
}

void Hearing::Chosen(double position) { storedOrChosen_ = std::max(storedOrChosen_, position); }

void Hearing::Forget() {
  path_.clear();
  sound_.reset();
  couldNotBePlayed_ = false;
  storedOrChosen_ = 0;
  player_.FurthestHeard = 0;
}

double Hearing::Reach() const { return std::max(storedOrChosen_, player_.FurthestHeard); }

double Hearing::HalfASecond() const { return sound_ ? sound_->rate / 2.0 : 0.0; }

bool Hearing::CameToItsEnd() const {
  if (couldNotBePlayed_ || !sound_) return true;
  return Reach() + HalfASecond() + 1 >= static_cast<double>(sound_->samples);
}

void Hearing::Renamed(const std::string& from, const std::string& to) {
  const auto nameBegin = from.rfind('/') + 1;
  const bool stored = from == path_ && to.starts_with(from.substr(0, nameBegin)) &&
                      to.find('/', nameBegin) == to.npos && to[nameBegin] != '.';
  if (!stored) return;
  const std::string name = to.substr(nameBegin);
  const double position = std::strtod(StoredIn(name).c_str(), nullptr);
  if (position <= Reach() + HalfASecond() + 1 || !fault_.empty()) return;
  fault_ = "Stored as typed up to " + std::to_string(position) + ", though the ear was not past " +
           std::to_string(Reach()) + ": " + Readable(name);
}

}  // namespace tavlo::simulation
