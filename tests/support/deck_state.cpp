#include "support/deck_state.h"

#include "forms/controls.h"

namespace tavlo::test {
namespace {

using Lines = std::vector<std::string>;

std::string Joined(const Lines& texts) {
  std::string all;
  for (const std::string& text : texts) all += "[" + text + "]";
  return all;
}

std::string RowsOf(const forms::Table& table) {
  std::string all = std::to_string(table.ListIndex);
  for (const forms::Row& row : table.Rows()) {
    all += " |";
    for (const forms::Cell& cell : row.cells) all += " " + cell.text;
  }
  return all;
}

std::string ValueOf(const forms::Control& control) {
  if (const auto* text = dynamic_cast<const forms::Text*>(&control)) return text->Value;
  if (const auto* key = dynamic_cast<const forms::Command*>(&control)) return key->Caption;
  if (const auto* box = dynamic_cast<const forms::Choice*>(&control)) {
    return box->Value ? "on" : "off";
  }
  if (const auto* range = dynamic_cast<const forms::Range*>(&control)) {
    return std::to_string(range->Value);
  }
  if (const auto* table = dynamic_cast<const forms::Table*>(&control)) return RowsOf(*table);
  if (const auto* pane = dynamic_cast<const forms::Pane*>(&control)) {
    return pane->Caption.Get() + Joined(pane->Panels) + std::to_string(pane->Left) + " " +
           std::to_string(pane->Top) + " " + std::to_string(pane->Height) + pane->Picture.Get();
  }
  return "";
}

void Add(Lines& lines, const forms::Control& control) {
  lines.push_back(control.Name + (control.Enabled ? "" : " disabled") +
                  (control.Visible ? "" : " hidden") + ": " + ValueOf(control) + " \"" +
                  control.Tooltip.Get() + "\"");
  const auto* const pane = dynamic_cast<const forms::Pane*>(&control);
  if (!pane) return;
  for (const forms::Control* const child : pane->Children()) Add(lines, *child);
}

void AddWindow(Lines& lines, const forms::Window& window) {
  Add(lines, window);
  const forms::Control* const focused = window.Focused();
  lines.push_back(window.Name + " is " +
                  (window.WindowShape == forms::Shape::Minimized ? "minimized" : "normal") +
                  ", has the keyboard at " + (focused ? focused->Name : "none") +
                  (window.MousePointer == forms::Pointer::Hourglass ? ", hourglass" : ""));
}

void AddSound(Lines& lines, DeckBench& bench) {
  const SimulatedPlayer& player = bench.player;
  lines.push_back("starts " + std::to_string(player.Starts) + ", blocks " +
                  std::to_string(player.Queued.size()) + ", heard " +
                  std::to_string(player.PlayedSamples()) + (player.IsRunning() ? ", runs" : ""));
  lines.push_back("volume " +
                  (player.Volumes.empty() ? "" : std::to_string(player.Volumes.back())));
  lines.push_back("prompts " + Joined(bench.promptControl.Sounded));
}

void AddRooms(Lines& lines, DeckBench& bench) {
  shell::Rooms* const rooms = bench.deck.Built();
  if (!rooms) return;
  const playback::DocumentInWork& document = rooms->documentInWork;
  lines.push_back("document " + document.CurrentDocumentPath + " at " +
                  std::to_string(document.CurrentSamplePosition));
  lines.push_back("winds " + std::to_string(static_cast<int>(rooms->transport.WindDirection)) +
                  ", tick " + std::to_string(rooms->transport.WindTickCount));
  lines.push_back("speed " + std::to_string(rooms->engine.PlaySpeedPercent) +
                  (rooms->engine.IsPlaying ? ", plays" : "") +
                  (rooms->engine.SliderDragging ? ", frozen" : "") +
                  (rooms->mainWindow.PlayRequested ? ", play requested" : ""));
}

}  // namespace

Lines StateOf(DeckBench& bench) {
  Lines lines;
  AddWindow(lines, bench.form.frmMain);
  AddWindow(lines, bench.config.frmConfiguration);
  AddSound(lines, bench);
  AddRooms(lines, bench);
  lines.push_back("Queue " + Joined(bench.disk.NamesIn(DeckBench::InQueue())));
  lines.push_back("Completed " + Joined(bench.disk.NamesIn(DeckBench::Completed())));
  for (const base::MessageBox& box : bench.loop.Shown) lines.push_back("box " + box.text);
  lines.push_back(bench.ended ? "ended" : "goes on");
  return lines;
}

}  // namespace tavlo::test
