#include "forms/controls.h"

#include <algorithm>
#include <compare>
#include <cstdint>
#include <tuple>
#include <utility>

#include "base/text.h"

namespace tavlo::forms {
namespace {

char Folded(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::string Folded(std::string_view text) {
  std::string folded(text);
  for (char& c : folded) c = Folded(c);
  return folded;
}

/// The first bytes of a text as numbers that compare as the folded text does. They tell nearly all
/// cells of a list apart, and a sort does not touch the texts.
class SortKey {
 public:
  SortKey(std::string_view text, int itsRow) : row(itsRow) {
    for (std::size_t i = 0; i < kBytes; ++i) {
      const bool there = i < text.size();
      Append(there ? static_cast<unsigned char>(Folded(text[i])) : 0, i);
    }
    // Among texts that begin alike, and zeros at their end among them, the shorter one is less.
    Append(IsLonger(text) ? 0xFF : static_cast<unsigned char>(text.size()), kBytes);
  }

  int row;

  /// What the keys alone say; equal for texts that are longer than the keys and begin alike.
  std::strong_ordering operator<=>(const SortKey& other) const {
    return std::tie(first_, second_) <=> std::tie(other.first_, other.second_);
  }
  bool IsWhole() const { return (second_ & 0xFF) != 0xFF; }

 private:
  static constexpr std::size_t kBytes = 15;

  static bool IsLonger(std::string_view text) { return text.size() > kBytes; }
  void Append(unsigned char byte, std::size_t at) {
    std::uint64_t& word = at < sizeof(first_) ? first_ : second_;
    word = word << 8 | byte;
  }

  std::uint64_t first_ = 0;
  std::uint64_t second_ = 0;
};

/// So many keys are made or sorted in some hundred microseconds.
constexpr std::ptrdiff_t kPiece = 2048;

/// A stable sort that breathes between its pieces.
template <typename Less>
void SortInPieces(std::vector<SortKey>& keys, const Less& less,
                  const std::function<void()>& breathe) {
  const std::ptrdiff_t size = std::ssize(keys);
  const auto at = [&](std::ptrdiff_t index) { return keys.begin() + std::min(index, size); };
  for (std::ptrdiff_t begin = 0; begin < size; begin += kPiece) {
    if (begin > 0) breathe();
    std::stable_sort(at(begin), at(begin + kPiece), less);
  }
  for (std::ptrdiff_t sorted = kPiece; sorted < size; sorted *= 2) {
    for (std::ptrdiff_t begin = 0; begin + sorted < size; begin += 2 * sorted) {
      breathe();
      std::inplace_merge(at(begin), at(begin + sorted), at(begin + 2 * sorted), less);
    }
  }
}

}  // namespace

Control::Control(Pane* parent, std::string name, const First& first)
    : Name(std::move(name)),
      Parent(parent),
      Heard(*this, first.heard),
      Tooltip(*this, first.tooltip),
      Enabled(*this, first.enabled),
      Visible(*this, first.visible) {
  if (Parent) Parent->children_.push_back(this);
}

Control::~Control() {
  if (Parent) std::erase(Parent->children_, this);
}

Window& Control::Home() const {
  const Control* control = this;
  while (control->Parent) control = control->Parent;
  // Only a window has no pane around it.
  return const_cast<Window&>(static_cast<const Window&>(*control));
}

bool Control::Reachable() const {
  for (const Control* control = this; control; control = control->Parent) {
    if (!control->Enabled || !control->Visible) return false;
  }
  return !Home().EventLoop().MessageBoxOpen();
}

void Control::RunByHand(const std::function<void()>& handler) {
  if (handler && Reachable()) Home().EventLoop().RunEvent(Name, handler);
}

void Control::CommandByHand(const std::function<void()>& handler) {
  if (!handler) return;
  RunByHand([&] {
    if (Home().OnCommandByHand) Home().OnCommandByHand();
    handler();
  });
}

Text::Text(Pane* parent, std::string name, const First& first, std::size_t longest)
    : Control(parent, std::move(name), first),
      Value(*this, first.caption, &OnChange),
      Longest(longest) {}

double Text::Number() const { return base::NumberValue(Value.Get()); }

std::int64_t Text::WholeNumber() const { return base::WholeNumberValue(Value.Get()); }

void Text::Change(std::string_view typed) {
  if (Longest > 0) typed = base::FirstCharacters(typed, Longest);
  std::string text(base::FirstBytes(typed, kMostTyped));
  // No keyboard has it, and behind it everything would be lost where the text is stored.
  std::erase(text, '\0');
  RunByHand([&] { Value = text; });
}

void Text::Click() { RunByHand(OnClick); }

void Text::DoubleClick() { RunByHand(OnDoubleClick); }

Command::Command(Pane* parent, std::string name, const First& first)
    : Control(parent, std::move(name), first), Caption(*this, first.caption) {}

void Command::Press(By by) {
  if (by == By::Hand) {
    CommandByHand(OnPress);
  } else if (Enabled && OnPress) {
    OnPress();
  }
}

Choice::Choice(Pane* parent, std::string name, const First& first, bool value, Kind kind)
    : Control(parent, std::move(name), first),
      Caption(*this, first.caption),
      Value(*this, value, &OnClick),
      ChoiceKind(kind) {}

void Choice::Click() {
  RunByHand([this] { Value = ChoiceKind == Kind::Option || !Value; });
}

int Span::Nearest(std::int64_t number) const {
  return static_cast<int>(std::clamp<std::int64_t>(number, minimum, maximum));
}

Range::Range(Pane* parent, std::string name, const First& first, const Span& span)
    : Control(parent, std::move(name), first), Bounds(span), Value(*this, span.value, &OnChange) {}

Range::Position& Range::Position::operator=(int value) {
  State<int>::operator=(std::clamp(value, range_.Bounds.minimum, range_.Bounds.maximum));
  return *this;
}

void Range::Press() {
  held_ = Reachable();
  CommandByHand([this] {
    if (OnPress) OnPress();
  });
}

void Range::Change(int value) {
  RunByHand([this, value] { Value = value; });
}

void Range::Release() {
  if (!std::exchange(held_, false)) {
    RunByHand(OnRelease);
  } else if (OnRelease) {
    Home().EventLoop().RunEvent(Name, OnRelease);
  }
}

void Range::Step(int value) {
  if (!Reachable()) return;
  Press();
  Change(value);
  Release();
  Window& window = Home();
  if (Reachable() && window.Focused() != this) window.FocusOn(*this);
}

Table::Table(Pane* parent, std::string name, const First& first)
    : Control(parent, std::move(name), first),
      ListIndex(*this, -1, &OnSelect),
      WhenEmpty(*this, "") {}

void Table::SetColumns(std::vector<Column> columns) {
  columns_ = std::move(columns);
  RowsChanged();
}

void Table::SetColumnTitle(int column, std::string title) {
  columns_.at(static_cast<std::size_t>(column)).title = std::move(title);
  RowsChanged();
}

std::vector<Row> Table::TakeRows() {
  std::vector<Row> taken = std::exchange(rows_, {});
  RowsChanged();
  ListIndex = -1;
  return taken;
}

void Table::Add(Row row) {
  rows_.push_back(std::move(row));
  RowsChanged();
}

void Table::Remove(int row) {
  rows_.erase(rows_.begin() + row);
  RowsChanged();
  if (ListIndex == row) {
    ListIndex = -1;
  } else if (ListIndex > row) {
    ListIndex = ListIndex - 1;
  }
}

const std::string& Table::TextAt(int row, int column) const {
  static const std::string none;
  if (row < 0 || static_cast<std::size_t>(row) >= rows_.size()) return none;
  const auto& cells = rows_[static_cast<std::size_t>(row)].cells;
  if (column < 0 || static_cast<std::size_t>(column) >= cells.size()) return none;
  return cells[static_cast<std::size_t>(column)].text;
}

void Table::Sort(int column, SortOrder order, const std::function<void()>& breathe) {
  std::vector<SortKey> keys;
  keys.reserve(rows_.size());
  for (int row = 0; row < static_cast<int>(rows_.size()); ++row) {
    if (row > 0 && row % kPiece == 0) breathe();
    keys.emplace_back(TextAt(row, column), row);
  }
  const auto isLess = [this, column](const SortKey& a, const SortKey& b) {
    const std::strong_ordering byKey = a <=> b;
    if (byKey != 0 || a.IsWhole()) return byKey < 0;
    return Folded(TextAt(a.row, column)) < Folded(TextAt(b.row, column));
  };
  const auto standsBefore = [&](const SortKey& a, const SortKey& b) {
    return order == SortOrder::Ascending ? isLess(a, b) : isLess(b, a);
  };
  SortInPieces(keys, standsBefore, breathe);
  sortColumn_ = column;
  sortOrder_ = order;
  std::vector<Row> sorted;
  sorted.reserve(rows_.size());
  int chosen = -1;
  for (const SortKey& next : keys) {
    if (next.row == ListIndex) chosen = static_cast<int>(sorted.size());
    sorted.push_back(std::move(rows_[static_cast<std::size_t>(next.row)]));
  }
  rows_ = std::move(sorted);
  RowsChanged();
  ListIndex = chosen;
}

void Table::SortByHeader(int column) {
  Sort(column, sortOrder_ == SortOrder::Ascending ? SortOrder::Descending : SortOrder::Ascending);
}

void Table::RowsChanged() {
  ++rowsVersion_;
  MarkChanged();
}

void Table::RowClick(int row) {
  if (row < 0 || static_cast<std::size_t>(row) >= rows_.size()) return;
  CommandByHand([this, row] {
    ListIndex = row;
    if (OnRowClick) OnRowClick();
    if (OnClick) OnClick();
  });
}

void Table::DoubleClick(int row) {
  // The click before it chose the row; a list that was built anew in between holds another one.
  if (row < 0 || row != ListIndex) return;
  RunByHand(OnDoubleClick);
}

void Table::HeaderClick(int column) {
  CommandByHand([this, column] {
    if (OnHeaderClick) OnHeaderClick(column);
  });
}

void Table::DropFiles(const std::vector<std::string>& paths) {
  CommandByHand([this, &paths] {
    if (OnDropFiles) OnDropFiles(paths);
  });
}

Pane::Pane(Pane* parent, std::string name, const First& first)
    : Control(parent, std::move(name), first),
      Caption(*this, first.caption),
      Left(*this, 0),
      Top(*this, 0),
      Height(*this, 0),
      Panels(*this, {}),
      PanelTooltips(*this, {}),
      Picture(*this, {}) {}

void Pane::Click() { RunByHand(OnClick); }

void Pane::DoubleClick() { RunByHand(OnDoubleClick); }

void Pane::PointerMove() { RunByHand(OnPointerMove); }

Window::Window(base::Loop& loop, std::string name, std::string caption)
    : Pane(nullptr, std::move(name), {.caption = std::move(caption), .visible = false}),
      Width(*this, 0),
      WindowShape(*this, Shape::Normal),
      TopMost(*this, false),
      MousePointer(*this, Pointer::Arrow),
      loop_(loop) {}

void Window::FocusOn(Control& control) {
  focused_ = &control;
  ++focusVersion_;
  MarkChanged();
}

void Window::ComeToFront() {
  ++frontVersion_;
  MarkChanged();
}

void Window::Centre() {
  Left = ScreenLeft + (ScreenWidth - Width) / 2;
  Top = ScreenTop + (ScreenHeight - Height) / 2;
}

void Window::Activate() { RunByHand(OnActivate); }

void Window::CloseRequest() { RunByHand(OnCloseRequest); }

void Window::Place(Twips left, Twips top, Twips width, Twips height, Shape shape) {
  const bool resized = Width != width || Height != height || WindowShape != shape;
  Left = left;
  Top = top;
  Width = width;
  Height = height;
  WindowShape = shape;
  if (resized && OnResize) loop_.RunEvent(Name, OnResize);
}

}  // namespace tavlo::forms
