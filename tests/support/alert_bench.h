#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "support/deck_bench.h"

namespace tavlo::test {

/// The whole deck with its watch for new work, and what it tells of it.
struct AlertBench : DeckBench {
  static std::string DropFolder() { return Path("/Files/dS2Queue/"); }
  static std::string ImportFolder() { return Path("/Files/ImportQueue/"); }

  /// A recorder's transfer ends in the drop folder.
  void Transfer(const std::string& name) { disk.WithFile(DropFolder() + name, "sound of " + name); }
  void Import(const std::string& name) { disk.WithFile(ImportFolder() + name, "sound of " + name); }

  lists::WaitingWork& Watch() { return deck.Built()->waitingWork; }
  lists::WaitingFigures& Figures() { return deck.Built()->waitingFigures; }

  /// The deck is ready, with this mode, a look each `seconds`, and a document in the Queue unless
  /// told otherwise.
  void StartWatching(const std::string& mode, const store::Assignments& others = {},
                     const std::string& inQueue = Document().Name()) {
    store::Assignments settings{{"WorkWaitingAlertMode", mode},
                                {"NewDictationAlertInterval", "60"},
                                {"AutoQueueRefreshInterval", "60"}};
    settings.insert(settings.end(), others.begin(), others.end());
    if (!inQueue.empty()) Drop(inQueue);
    StartWith(settings);
    promptControl.Sounded.clear();
  }
  /// The next look comes, and what it raises is over.
  void WaitForACheck() { loop.Advance(std::chrono::seconds{70}); }

  /// The prompts of alerts that were spoken.
  std::vector<std::string> Spoken() const {
    std::vector<std::string> names;
    for (const std::string& path : promptControl.Sounded) {
      const auto begin = path.rfind('/') + 1;
      const std::string name = path.substr(begin, path.rfind('.') - begin);
      if (name.starts_with("New")) names.push_back(name);
    }
    return names;
  }
  /// The texts of the alerts that were shown.
  std::vector<std::string> Messages() const {
    std::vector<std::string> texts;
    for (const base::MessageBox& box : loop.Shown) {
      if (box.title.ends_with("Alert")) texts.push_back(box.text);
    }
    return texts;
  }
  bool RefreshedByVoice() const {
    return std::ranges::any_of(promptControl.Sounded, [](const std::string& path) {
      return path.find("/RefreshQueue.") != path.npos;
    });
  }
};

}  // namespace tavlo::test
