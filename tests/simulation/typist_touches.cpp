// What hands do to controls without a purpose: to all that stand on the forms, whatever they are
// for.
#include "simulation/typist.h"

namespace tavlo::simulation {
namespace {

const std::vector<std::string>& Words() {
  static const std::vector<std::string> words{"",
                                              "0",
                                              "-5",
                                              "60",
                                              "1e300",
                                              "abc",
                                              "12 and a half",
                                              "/share/import",
                                              "\xFF",
                                              " ",
                                              "C:\\Lyrane",
                                              "\n\n\n",
                                              "99999999999999999999",
                                              std::string("a\0b", 3),
                                              std::string(70'000, 'x')};
  return words;
}

}  // namespace

void Typist::PressCommand() { Press(Some(desk_.Controls().commands)); }

void Typist::DragSlider() { Drag(Some(desk_.Controls().sliders)); }

void Typist::ClickChoice() {
  ComeNear(desk_.Controls().choices);
  forms::Choice& choice = Some(desk_.Controls().choices);
  Note("clicks " + choice.Name);
  choice.Click();
}

void Typist::TypeText() {
  ComeNear(desk_.Controls().boxes);
  forms::Text& box = Some(desk_.Controls().boxes);
  Note("types into " + box.Name);
  box.Change(chance_.Pick(Words()));
}

void Typist::ClickHeader() {
  forms::Table& table = Some(desk_.Controls().tables);
  const int columns = static_cast<int>(table.Columns().size());
  if (columns == 0) return;
  Note("clicks a heading of " + table.Name);
  table.HeaderClick(chance_.Below(columns));
}

void Typist::ClickInAList() { ClickSomeRowOf(Some(desk_.Controls().tables)); }

void Typist::ClickSomewhere() {
  const bool onText = chance_.OneIn(3);
  if (onText) return PointAt(Some(desk_.Controls().texts));
  forms::Pane& pane = Some(desk_.Controls().panes);
  if (chance_.OneIn(4)) pane.PointerMove();
  PointAt(pane);
}

template <typename C>
void Typist::PointAt(C& place) {
  Note("clicks " + place.Name);
  place.Click();
  if (chance_.OneIn(4)) place.DoubleClick();
}

void Typist::ClickRowOf(forms::Table& table, int row) {
  Note("clicks row " + std::to_string(row) + " of " + table.Name);
  if (&table == &desk_.Main().listViewCompleted && table.Reachable()) {
    clickedCompleted_ = table.TextAt(row, forms::document_column::FileName);
  }
  table.RowClick(row);
  if (chance_.OneIn(4)) table.DoubleClick(row);
}

void Typist::ClickSomeRowOf(forms::Table& table) {
  const int rows = static_cast<int>(table.Rows().size());
  if (rows > 0) ClickRowOf(table, chance_.Below(rows));
}

template <typename C>
void Typist::ComeNear(const std::vector<Touchable<C>>& controls) {
  if (chance_.OneIn(3) || WithinReach(controls).empty()) Press(desk_.Main().mnuConfiguration);
  ActivateWindows();
}

}  // namespace tavlo::simulation
