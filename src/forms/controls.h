#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/loop.h"

/// The state of every control, as plain data. Whether a button is enabled is the state of this
/// program: pedals ask it, timers ask it, exit asks it. Widgets only show what stands here.
///
/// A control has two doors. Its *state* is written by rules only. What a *user can do* (Press,
/// Change, Release, ...) is called by the binding to the toolkit and by the simulated typist only.
/// Four rules hold everywhere:
///
/// - A press by program needs the command enabled and nothing else: unattended work presses buttons
///   of a hidden frame. A hand needs the control and every pane around it visible and enabled, and
///   no message box open; otherwise what it does is dropped.
/// - Writing an equal value does nothing. A rule's write of another value runs the change handler
///   of texts, choices, tables' list index and ranges, never a range's release.
/// - A change handler may write its own control again and is then run again for that write.
/// - A table sorts by the text of a column, stably.
namespace tavlo::forms {

/// Lengths and places in forms: 1/1440 inch, 15 to a logical pixel.
using Twips = int;

/// Bytes that a hand may put into a text, a pasted one too: as many as a setting may have. A longer
/// one could not be stored, and what is stored with it neither.
inline constexpr std::size_t kMostTyped = 65536;

enum class By { Program, Hand };

class Control;
class Pane;
class Window;

/// One visible value of a control. Assigning another value marks the control for repainting and,
/// for a value that has a change handler, runs it.
template <typename T>
class State {
 public:
  State(Control& owner, T first, const std::function<void()>* onChange = nullptr)
      : owner_(owner), value_(std::move(first)), onChange_(onChange) {}
  State(const State&) = delete;
  inline State& operator=(T value);
  State& operator=(const State& other) { return *this = other.value_; }

  const T& Get() const { return value_; }
  operator const T&() const { return value_; }

 private:
  Control& owner_;
  T value_;
  const std::function<void()>* onChange_;
};

/// What a control starts with.
struct First {
  std::string caption = {};
  std::string tooltip = {};
  bool enabled = true;
  bool visible = true;
  /// What a screen reader calls the control where neither caption nor tooltip does for a name.
  std::string heard = {};
};

class Control {
 public:
  /// `name` is the control's name in the domain; the toolkit gets it too.
  Control(Pane* parent, std::string name, const First& first);
  virtual ~Control();
  Control(const Control&) = delete;

  const std::string Name;
  Pane* const Parent;
  /// Empty where the name is the caption or the tooltip; see AccessibleName.
  State<std::string> Heard;
  State<std::string> Tooltip;
  State<bool> Enabled;
  State<bool> Visible;

  /// Runs after the change handler; the settings that are kept as they change hang here.
  std::function<void()> OnStored;

  /// The window that the control stands on.
  Window& Home() const;
  /// True when a hand could reach this control now.
  bool Reachable() const;

  /// Counts every change of a visible value; the binding compares it with what it last showed.
  unsigned Version() const { return version_; }
  void MarkChanged() { ++version_; }

 protected:
  /// Runs `handler` as an event of its own when a hand can reach the control.
  void RunByHand(const std::function<void()>& handler);
  /// The same for what the window counts as a command.
  void CommandByHand(const std::function<void()>& handler);

 private:
  unsigned version_ = 1;
};

template <typename T>
State<T>& State<T>::operator=(T value) {
  if (value_ == value) return *this;
  value_ = std::move(value);
  owner_.MarkChanged();
  if (onChange_) {
    if (*onChange_) (*onChange_)();
    if (owner_.OnStored) owner_.OnStored();
  }
  return *this;
}

/// A label or a text box. The value of a label is its caption.
class Text : public Control {
 public:
  Text(Pane* parent, std::string name, const First& first = {}, std::size_t longest = 0);

  State<std::string> Value;
  /// Characters that a hand may type at most; 0 is no limit but kMostTyped.
  const std::size_t Longest;
  std::function<void()> OnChange;
  std::function<void()> OnClick;
  std::function<void()> OnDoubleClick;

  /// The number value of the text, and the same cut to a whole number.
  double Number() const;
  std::int64_t WholeNumber() const;

  void Change(std::string_view typed);
  void Click();
  void DoubleClick();
};

/// A button or a menu entry. An ampersand in the caption stands before the key that reaches it.
class Command : public Control {
 public:
  Command(Pane* parent, std::string name, const First& first);

  State<std::string> Caption;
  std::function<void()> OnPress;

  /// By program this runs inside the event that presses; by hand it is an event of its own.
  void Press(By by = By::Program);
};

/// A check box, or an option button (which a click only ever sets).
class Choice : public Control {
 public:
  enum class Kind { Check, Option };
  Choice(Pane* parent, std::string name, const First& first, bool value = false,
         Kind kind = Kind::Check);

  State<std::string> Caption;
  State<bool> Value;
  const Kind ChoiceKind;
  /// Runs for a click and for a rule's write alike.
  std::function<void()> OnClick;

  void Click();
};

/// How a screen reader says a range's value: the numbers that its bounds stand for, what they are
/// rounded to, and their unit.
struct Scale {
  double atMinimum = 0;
  double atMaximum = 0;
  double step = 1;
  std::string_view unit = {};
};
inline constexpr Scale kPercent{.atMaximum = 100, .unit = "percent"};

/// Bounds, steps and first value of a range. Steps are what one key press and one page press move.
struct Span {
  int minimum = 0;
  int maximum = 100;
  int smallStep = 1;
  int largeStep = 5;
  int value = 0;
  Scale heard = {};

  /// The value within the bounds that is nearest to a number of any size.
  int Nearest(std::int64_t number) const;
};

/// A slider, a progress bar or a scroll bar.
class Range : public Control {
 public:
  Range(Pane* parent, std::string name, const First& first, const Span& span);

  const Span Bounds;
  /// A write outside the bounds is cut to them.
  class Position : public State<int> {
   public:
    Position(Range& owner, int first, const std::function<void()>* onChange)
        : State<int>(owner, first, onChange), range_(owner) {}
    Position& operator=(int value);

   private:
    Range& range_;
  } Value;

  std::function<void()> OnPress;
  std::function<void()> OnChange;
  std::function<void()> OnRelease;

  /// A hand takes the slider, moves it, lets it go. Release also works when a rule or a message box
  /// has put the slider out of reach since Press.
  void Press();
  void Change(int value);
  void Release();
  /// A hand holds it: it was taken and not let go yet.
  bool IsHeld() const { return held_; }
  /// A key on the slider: all three at once. The keyboard stays on the slider, although its rule
  /// gives the keyboard away after a click; otherwise the next key would not reach the slider.
  void Step(int value);

 private:
  bool held_ = false;
};

/// 0xRRGGBB.
using Colour = unsigned;

struct Cell {
  std::string text;
  Colour colour = 0x000000;
};

struct Row {
  std::vector<Cell> cells;
};

struct Column {
  std::string title;
  Twips width = 0;
  bool figures = false;  ///< Numbers, which stand at the right.
};

enum class SortOrder { Ascending, Descending };

/// A list of rows with columns, or a combo box (rows of one cell). Columns count from 0.
class Table : public Control {
 public:
  Table(Pane* parent, std::string name, const First& first = {});

  State<int> ListIndex;              ///< The chosen row, -1 for none.
  State<std::string> WhenEmpty;      ///< What stands in a list without rows; a heading line first.
  std::function<void()> OnRowClick;  ///< Runs before OnClick, so that the name is in place.
  std::function<void()> OnClick;
  std::function<void()> OnDoubleClick;
  std::function<void(int column)> OnHeaderClick;
  std::function<void()> OnSelect;  ///< ListIndex changed, by a hand or a rule.
  /// Files of the desktop were let go over the list: their full paths, bytes as the desktop has
  /// them.
  std::function<void(const std::vector<std::string>& paths)> OnDropFiles;

  const std::vector<Column>& Columns() const { return columns_; }
  void SetColumns(std::vector<Column> columns);
  void SetColumnTitle(int column, std::string title);

  const std::vector<Row>& Rows() const { return rows_; }
  void Clear() { TakeRows(); }
  /// Empties the list and gives out what stood in it: to free many rows takes its time.
  std::vector<Row> TakeRows();
  void Add(Row row);
  void Add(std::string text) { Add(Row{{Cell{std::move(text)}}}); }
  void Remove(int row);
  /// Text of a cell, empty when the row or the column does not exist.
  const std::string& TextAt(int row, int column) const;

  int SortColumn() const { return sortColumn_; }
  SortOrder Order() const { return sortOrder_; }
  /// Sorts by the column's text; rows with equal text keep their order. The choice follows its row.
  /// A long sort calls `breathe` again and again; the rows change after its last call, all at once,
  /// and must stay as they are until then.
  void Sort(
      int column, SortOrder order, const std::function<void()>& breathe = [] {});
  /// What a click on a header does: the clicked column becomes the key, the order flips.
  void SortByHeader(int column);

  /// Changes when rows or columns change; the binding resets its model then.
  unsigned RowsVersion() const { return rowsVersion_; }

  void RowClick(int row);
  void DoubleClick(int row);
  void HeaderClick(int column);
  void DropFiles(const std::vector<std::string>& paths);

 private:
  void RowsChanged();

  std::vector<Column> columns_;
  std::vector<Row> rows_;
  int sortColumn_ = 0;
  SortOrder sortOrder_ = SortOrder::Ascending;
  unsigned rowsVersion_ = 1;
};

/// A frame, a picture or the status bar.
class Pane : public Control {
 public:
  Pane(Pane* parent, std::string name, const First& first = {});

  State<std::string> Caption;
  State<Twips> Left;
  State<Twips> Top;
  State<Twips> Height;
  State<std::vector<std::string>> Panels;  ///< Texts of a status bar.
  State<std::vector<std::string>> PanelTooltips;
  State<std::string> Picture;  ///< Path of a picture's file, empty for none.

  std::function<void()> OnClick;
  std::function<void()> OnDoubleClick;
  std::function<void()> OnPointerMove;

  /// What stands on the pane, in the order of the form.
  const std::vector<Control*>& Children() const { return children_; }

  void Click();
  void DoubleClick();
  void PointerMove();

 private:
  friend class Control;
  std::vector<Control*> children_;
};

enum class Shape { Normal, Minimized };
enum class Pointer { Arrow, Hourglass };

/// A top-level window. Its height is its outer height, frame and title included.
class Window : public Pane {
 public:
  Window(base::Loop& loop, std::string name, std::string caption);

  State<Twips> Width;
  State<Shape> WindowShape;
  State<bool> TopMost;
  State<Pointer> MousePointer;
  /// Place and size of the screen that the window stands on; the binding keeps them.
  Twips ScreenLeft = 0;
  Twips ScreenTop = 0;
  Twips ScreenWidth = 1920 * 15;
  Twips ScreenHeight = 1080 * 15;
  /// Height of all that stands above the content: frame, title, menu bar. The binding measures it
  /// when the window first shows; 0 until then.
  Twips AboveContent = 0;
  /// Whether what is typed goes to this window, to a message box or to another window of the
  /// program; the binding keeps it.
  bool HasKeyboard = false;

  std::function<void()> OnActivate;
  std::function<void()> OnResize;
  std::function<void()> OnCloseRequest;
  /// Runs before every command that a hand gives on the window: a pressed button or menu entry, a
  /// clicked row or heading, a slider that is taken.
  std::function<void()> OnCommandByHand;

  /// The control that has the keyboard. Asking again for the one that has it asks the toolkit
  /// again.
  void FocusOn(Control& control);
  Control* Focused() const { return focused_; }
  unsigned FocusVersion() const { return focusVersion_; }

  /// Asks the toolkit to show the window in front of the others. The keyboard stays where it is as
  /// far as the desktop can do that, since somebody may be typing there. One that is not visible,
  /// or minimized, stays so.
  void ComeToFront();
  unsigned FrontVersion() const { return frontVersion_; }

  /// Puts the window in the middle of its screen.
  void Centre();

  void Activate();
  void CloseRequest();
  /// The user moved or resized the window, or the window manager did. OnResize does not run when
  /// the window only moved.
  void Place(Twips left, Twips top, Twips width, Twips height, Shape shape);

  base::Loop& EventLoop() const { return loop_; }

 private:
  base::Loop& loop_;
  Control* focused_ = nullptr;
  unsigned focusVersion_ = 0;
  unsigned frontVersion_ = 0;
};

/// Shows the hourglass on a window for as long as it lives, so that a command that fails on its way
/// leaves the arrow behind like one that ends.
class Hourglass {
 public:
  explicit Hourglass(Window& window) : window_(window) {
    window_.MousePointer = Pointer::Hourglass;
  }
  ~Hourglass() { window_.MousePointer = Pointer::Arrow; }
  Hourglass(const Hourglass&) = delete;

 private:
  Window& window_;
};

}  // namespace tavlo::forms
