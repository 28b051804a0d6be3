#pragma once

#include <sys/types.h>

#include <cstdio>
#include <string>
#include <vector>

namespace tavlo::test {

/// Something that a screen reader meets in a window.
struct HeardNode {
  int depth = 0;
  std::string role;
  std::string name;
  std::string description;
  std::string states;
  std::string value;
  std::string minimum;
  std::string maximum;

  bool Is(const std::string& state) const { return states.find(state) != states.npos; }
};

/// A cell of a table, by each of the ways that lead to it. Places are "row,column".
struct HeardCell {
  std::string asked;  ///< The place that was asked for.
  std::string found;  ///< The place that the table gives for its number.
  std::string named;  ///< The same for the number that the cell itself names.
  std::string header;
  std::string text;
  std::string child;  ///< The text of the child that has its number.
};

/// A screen reader in a process of its own. It sees of the program what the desktop's accessibility
/// bus gives it and nothing else.
class ScreenReader {
 public:
  ScreenReader();
  ~ScreenReader();
  ScreenReader(const ScreenReader&) = delete;

  /// Everything that shows in the program's windows.
  std::vector<HeardNode> Tree();
  /// The tree's node of that role and name; one without a role when there is none.
  HeardNode Find(const std::string& role, const std::string& name);
  /// The headers of a table, and then each row.
  std::vector<std::vector<std::string>> Table(const std::string& name);
  /// Every cell of a table, row by row.
  std::vector<HeardCell> Grid(const std::string& name);
  /// Moves a slider, and presses a button; fails the test when there is none of that name.
  void Set(const std::string& name, int value);
  void Press(const std::string& name);
  /// What stands in the text box of that name, as far as it is given out.
  std::string Text(const std::string& name);
  /// Letters that came and went in text boxes since the last time, in pieces as they were told.
  std::vector<std::string> Typed();
  /// What was told since the last time, as "event|role|name".
  std::vector<std::string> Heard();

 private:
  std::vector<std::string> Ask(const std::string& command);
  std::string ReadLine();

  pid_t process_ = -1;
  std::FILE* to_ = nullptr;
  std::FILE* from_ = nullptr;
};

}  // namespace tavlo::test
