#include "window/deck_in_words.h"

#include <vector>

namespace tavlo::window {
namespace {

constexpr std::size_t kPriorityPanel = 0;
constexpr std::size_t kAuthorPanel = 2;
constexpr std::size_t kSubjectPanel = 5;

/// Author and subject, as the status bar has them; empty when it holds no document.
std::string Document(const forms::MainForm& form) {
  const std::vector<std::string>& panels = form.StatusBar1.Panels.Get();
  if (panels.size() <= kSubjectPanel || panels[kAuthorPanel].empty()) return {};
  const std::string priority = panels[kPriorityPanel].empty() ? "" : ", priority";
  return panels[kAuthorPanel] + priority + ", " + panels[kSubjectPanel];
}

/// Pressing Play is what puts a document in work; from then on Skip can leave it.
bool InWork(const forms::MainForm& form) { return form.cmdSkip.Enabled; }

std::string Running(const forms::MainForm& form) {
  switch (form.DeckWinds.Get()) {
    case forms::Winding::Back:
      return "Rewinding";
    case forms::Winding::On:
      return "Winding forward";
    case forms::Winding::No:
      break;
  }
  if (InWork(form)) return "Playing";
  // The user may not have chosen it: after Complete the next one comes by itself.
  const std::string document = Document(form);
  return document.empty() ? "Previewing" : "Previewing: " + document;
}

std::string Standing(const forms::MainForm& form) {
  const std::string& position = form.lblFilePositionHMS.Value;
  if (form.slPosition.Value == form.slPosition.Bounds.maximum &&
      position == form.lblFileLengthHMS.Value.Get()) {
    return "At the end";
  }
  return form.slPosition.Value == 0 && position == "00:00:00" ? "At the beginning"
                                                              : "Stopped at " + position;
}

}  // namespace

std::string DeckInWords(const forms::MainForm& form) {
  if (form.DeckRuns) return Running(form);
  if (InWork(form)) return Standing(form);
  const std::string document = Document(form);
  if (form.cmdPlay.Enabled && !document.empty()) return "Selected: " + document;
  if (form.cmdComplete.Enabled && !document.empty()) return "Can not be played: " + document;
  return "No dictation selected";
}

}  // namespace tavlo::window
