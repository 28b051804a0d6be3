#pragma once

#include <algorithm>
#include <array>
#include <string_view>

namespace tavlo::playback {

/// All that the deck can say, by the names of the recordings.
inline constexpr std::array<std::string_view, 25> kPromptNames{
    "RewindTone",
    "ForwardTone",
    "RewindEnd",
    "ForwardEnd",
    "Complete",
    "AllDone",
    "Return",
    "Save",
    "RefreshQueue",
    "RefreshImport",
    "MovedToQueue",
    "MoveErrQueue",
    "DeleteOne",
    "DeleteError",
    "DeleteAllComp",
    "DeleteAllImport",
    "SentOneImport",
    "SentAllImport",
    "NewDocInQ",
    "NewPriorityDocInQ",
    "NewDocInImport",
    "NewPriorityDocInImport",
    "EmptyDocErrMayComplete",
    "EmptyDocErr",
    "Welcome",
};

/// The name of a prompt. A name that is not in the table does not compile, so nothing can be said
/// that was never recorded.
class PromptName {
 public:
  // Both conversions are implicit, so that a prompt is named by its text alone.
  consteval PromptName(const char* name) : name_(name) {
    if (std::ranges::find(kPromptNames, name_) == kPromptNames.end()) NoSuchPrompt();
  }
  constexpr operator std::string_view() const { return name_; }

 private:
  static void NoSuchPrompt();

  std::string_view name_;
};

}  // namespace tavlo::playback
