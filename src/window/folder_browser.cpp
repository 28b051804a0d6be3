#include "window/folder_browser.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace tavlo::window {
namespace {

/// The only column, which fills its list.
constexpr forms::Twips kColumnWidth = 2000;

char Small(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

/// As file managers order them: letters and their capitals side by side.
bool ComesBefore(const std::string& one, const std::string& other) {
  const auto order =
      std::ranges::mismatch(one, other, [](char a, char b) { return Small(a) == Small(b); });
  if (order.in1 == one.end() && order.in2 == other.end()) return one < other;
  if (order.in1 == one.end() || order.in2 == other.end()) return order.in1 == one.end();
  return static_cast<unsigned char>(Small(*order.in1)) <
         static_cast<unsigned char>(Small(*order.in2));
}

std::string FolderOf(const std::string& folder, const std::string& name) {
  return folder.ends_with('/') ? folder + name : folder + "/" + name;
}

std::string Above(const std::string& folder) {
  const std::size_t end = folder.rfind('/');
  return end == 0 || end == folder.npos ? "/" : folder.substr(0, end);
}

}  // namespace

FolderBrowser::FolderBrowser(forms::ConfigurationForm& config, store::BrowsableFolders& folders)
    : config_(config), folders_(folders) {
  config_.Dir1.SetColumns({forms::Column{.title = "Folders", .width = kColumnWidth}});
  // A click on the place that shows counts too: it leads back to its top, or tries it once more.
  config_.Drive1.OnRowClick = [this] { EnterPlace(); };
  config_.Dir1.OnDoubleClick = [this] { EnterRow(); };
}

void FolderBrowser::OfferPlaces() {
  places_ = folders_.StartingPlaces();
  config_.Drive1.Clear();
  for (const store::StartingPlace& place : places_) config_.Drive1.Add(place.name);
  if (!config_.lblBrowsedFolder.Value.Get().empty()) return ShowPlace();
  config_.Drive1.ListIndex = places_.empty() ? -1 : 0;
  EnterPlace();
}

/// The place that is browsed, or the one that could not be.
void FolderBrowser::ShowPlace() {
  const bool reads = config_.Dir1.Enabled;
  config_.Drive1.ListIndex = PlaceOf(reads ? config_.lblBrowsedFolder.Value.Get() : unreadable_);
}

/// The place that a folder stands on; where one stands inside of another it is the inner one.
int FolderBrowser::PlaceOf(const std::string& folder) const {
  int best = -1;
  std::size_t longest = 0;
  for (std::size_t i = 0; i < places_.size(); ++i) {
    const std::string& start = places_[i].folder;
    const bool inside = folder == start || folder.starts_with(FolderOf(start, ""));
    if (!inside || start.size() <= longest) continue;
    best = static_cast<int>(i);
    longest = start.size();
  }
  return best;
}

void FolderBrowser::EnterPlace() {
  const int chosen = config_.Drive1.ListIndex;
  if (chosen < 0 || chosen >= static_cast<int>(places_.size())) return;
  const std::string folder = places_[static_cast<std::size_t>(chosen)].folder;
  const bool entered = Enter(folder);
  if (!entered) unreadable_ = folder;
  config_.Dir1.Enabled = entered;
  if (!entered) config_.Dir1.Clear();
  config_.Dir1.WhenEmpty = entered ? "No folders" : "This place cannot be read";
}

void FolderBrowser::EnterRow() {
  const std::string name = config_.Dir1.TextAt(config_.Dir1.ListIndex, 0);
  const std::string& browsed = config_.lblBrowsedFolder.Value;
  if (name.empty()) return;
  const std::string folder = name == forms::kWayUp ? Above(browsed) : FolderOf(browsed, name);
  if (Enter(folder)) return ShowPlace();
  config_.frmConfiguration.EventLoop().Show({.title = config_.frmConfiguration.Caption,
                                             .text = "This folder cannot be read:\n\n" + folder,
                                             .icon = base::Icon::Warning});
}

bool FolderBrowser::Enter(const std::string& folder) {
  const forms::Hourglass hourglass(config_.frmConfiguration);
  std::optional<std::vector<std::string>> names = folders_.FoldersIn(folder);
  if (!names) return false;
  List(folder, std::move(*names));
  return true;
}

void FolderBrowser::List(const std::string& folder, std::vector<std::string> names) {
  std::ranges::sort(names, ComesBefore);
  forms::Table& list = config_.Dir1;
  list.Clear();
  if (folder != "/") list.Add(forms::kWayUp);
  for (std::string& name : names) list.Add(std::move(name));
  list.ListIndex = list.Rows().empty() ? -1 : 0;
  config_.lblBrowsedFolder.Value = folder;
}

}  // namespace tavlo::window
