#include "simulation/control_walk.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace tavlo::simulation {
namespace {

/// A name stands for the controls of that name with a number behind it, too.
struct Exception {
  std::string_view name;
  const char* reason;
};
constexpr const char* kMixerHand = "The hand on the mixer page works it and looks at its source.";
constexpr const char* kShowsOnly = "It shows a level and can not be taken.";
constexpr std::array kLeftOut{
    Exception{"mnuExit", "Who asks to close presses it; else a day would be spent with starting."},
    Exception{"txtFocus", "It holds the keyboard and takes no text."},
    Exception{"txtWavImportSubdirectory", "It shows a number, which the scroll bar chooses."},
    Exception{"DeviceCombo", kMixerHand},
    Exception{"slVolume", kMixerHand},
    Exception{"slBalance", kMixerHand},
    Exception{"chMute", kMixerHand},
    Exception{"MeterLeft", kShowsOnly},
    Exception{"MeterRight", kShowsOnly},
    Exception{"ProgressBar1", kShowsOnly},
};

/// What a typist's work is made of. Every other control counts as 1.
struct Often {
  std::string_view name;
  int weight;
};
constexpr std::array kOften{
    Often{"cmdPlay", 16},
    Often{"cmdStop", 10},
    Often{"cmdComplete", 4},
    Often{"cmdSave", 4},
    Often{"cmdSkip", 4},
    Often{"cmdRewind", 3},
    Often{"cmdForward", 3},
    Often{"cmdSkipBeg", 3},
    Often{"cmdSkipEnd", 3},
    Often{"cmdUpdateFileList", 6},
    Often{"slPosition", 12},
    Often{"mnuClose", 8},
    Often{"cmdImportCompleteSnipetStop", 3},
    Often{"cmdNormalSpeed", 2},
    Often{"cmdWavConvMode", 3},
};

bool StandsFor(std::string_view name, std::string_view control) {
  return control.starts_with(name) &&
         control.find_first_not_of("0123456789", name.size()) == control.npos;
}

int WeightOf(const forms::Control& control) {
  const auto often = std::ranges::find(kOften, std::string_view(control.Name), &Often::name);
  return often == kOften.end() ? 1 : often->weight;
}

bool IsLabel(const forms::Text& text) {
  return text.Name.starts_with("lbl") || text.Name.starts_with("Label");
}

/// A window that is added must be named here, or this does not compile.
std::array<forms::Window*, 4> AllWindows(shell::Windows& windows) {
  auto& [splash, main, configuration, about] = windows;
  return {&splash.frmInitSplash, &main.frmMain, &configuration.frmConfiguration, &about.frmAbout};
}

bool StandsOn(const forms::Pane& pane, std::string_view name) {
  return std::ranges::any_of(pane.Children(), [&](const forms::Control* control) {
    const auto* const inner = dynamic_cast<const forms::Pane*>(control);
    return StandsFor(name, control->Name) || (inner && StandsOn(*inner, name));
  });
}

}  // namespace

ControlWalk::ControlWalk(shell::Windows& all) {
  for (forms::Window* const window : AllWindows(all)) {
    windows.push_back({window, 1});
    WalkOver(*window);
  }
}

const char* ControlWalk::LeftOut(const forms::Control& control) {
  const auto found = std::ranges::find_if(kLeftOut, [&](const Exception& exception) {
    return StandsFor(exception.name, control.Name);
  });
  return found == kLeftOut.end() ? nullptr : found->reason;
}

std::vector<std::string> ControlWalk::Obsolete(shell::Windows& all) {
  std::vector<std::string> names;
  const auto expect = [&](std::string_view name) {
    const bool stands = std::ranges::any_of(
        AllWindows(all), [&](const forms::Window* window) { return StandsOn(*window, name); });
    if (!stands) names.emplace_back(name);
  };
  for (const Exception& exception : kLeftOut) expect(exception.name);
  for (const Often& often : kOften) expect(often.name);
  return names;
}

void ControlWalk::WalkOver(const forms::Pane& pane) {
  for (forms::Control* const control : pane.Children()) {
    if (!LeftOut(*control)) Take(*control);
    if (const auto* const inner = dynamic_cast<const forms::Pane*>(control)) WalkOver(*inner);
  }
}

void ControlWalk::Take(forms::Control& control) {
  const auto take = [&]<typename C>(std::vector<Touchable<C>>& into) {
    auto* const taken = dynamic_cast<C*>(&control);
    if (taken) into.push_back({taken, WeightOf(control)});
    return taken;
  };
  take(commands);
  take(choices);
  take(sliders);
  take(tables);
  take(panes);
  const forms::Text* const text = take(texts);
  if (text && !IsLabel(*text)) take(boxes);
}

}  // namespace tavlo::simulation
