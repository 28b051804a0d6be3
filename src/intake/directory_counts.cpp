#include "intake/directory_counts.h"

#include <vector>

#include "intake/import_directories.h"

namespace tavlo::intake {
namespace {

using base::operator""ms;

/// Between two directories, so that a hand is never kept waiting behind all of them.
constexpr base::Duration kBetweenLooks = 20ms;

}  // namespace

DirectoryCounts::DirectoryCounts(base::Loop& loop, window::MainWindow& window, store::Disk& disk,
                                 const store::WorkFolders& folders)
    : form_(window.Form()),
      window_(window),
      disk_(disk),
      folders_(folders),
      tmrImportDirectories_(loop, "tmrImportDirectories", kBetweenLooks) {
  form_.frameImportDirectories.Panels = std::vector<std::string>(kImportDirectories);
  tmrImportDirectories_.OnTick = [this] { LookAtNext(); };
}

void DirectoryCounts::ListWasBuilt(int rows, bool whole) {
  Write(Shown(), whole ? std::to_string(rows) : "");
}

void DirectoryCounts::LookAround() {
  next_ = 0;
  tmrImportDirectories_.Start();
}

void DirectoryCounts::LookAtNext() {
  tmrImportDirectories_.Stop();
  if (!form_.frameImport.Visible || next_ == kImportDirectories) return;
  // Whoever changes a list just now may be emptying the very directory.
  if (window_.guards.ListsMayChange()) {
    const int directory = next_++;
    if (directory != Shown()) {
      const std::string folder = ImportDirectoryPath(folders_, std::to_string(directory));
      const store::Listing listing = disk_.ListPlainFiles(folder);
      Write(directory, listing.finished ? std::to_string(listing.names.size()) : "");
      // The directories lie on one place, as a rule, and it gave no answer: nothing is known of
      // those behind.
      if (disk_.OutOfReach(folder)) return ForgetFrom(next_);
    }
  }
  tmrImportDirectories_.Start();
}

void DirectoryCounts::ForgetFrom(int directory) {
  for (; directory < kImportDirectories; ++directory) {
    if (directory != Shown()) Write(directory, "");
  }
}

void DirectoryCounts::Write(int directory, const std::string& count) {
  std::vector<std::string> counts = form_.frameImportDirectories.Panels;
  counts.at(static_cast<std::size_t>(directory)) = count;
  form_.frameImportDirectories.Panels = std::move(counts);
}

int DirectoryCounts::Shown() const {
  return static_cast<int>(form_.txtWavImportSubdirectory.WholeNumber());
}

}  // namespace tavlo::intake
